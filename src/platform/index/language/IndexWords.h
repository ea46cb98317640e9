#pragma once

#include <QByteArray>
#include <QString>
#include <cstddef>
#include <vector>

// Where words begin and end, the same for queries, for the text index and for what is stored in it.
//
// A word is a run of letters, digits and marks; each sign of a script that is written without
// blanks (ideographs, syllables, Thai …) is a word of its own, so that parts of such text are
// found. Words are folded in case and marks as foldText() does.
// Any thread.
namespace IndexWords {

bool isWordCharacter(char32_t c); // a letter, a digit or a mark
bool isSign(char32_t c);          // of a script without blanks

// A longer word counts by its beginning, so that encoded data does not fill the index.
inline constexpr qsizetype longestWord = 64; // bytes of UTF-8, folded

// Told of each word: folded UTF-8 (valid during the call) and where in the text it stands, in
// bytes. Anything but 0 stops.
using Take = int (*)(void *context, const char *word, int size, int start, int end);

// Splits and folds UTF-8; bytes that are none separate words. Returns what stopped it, or 0.
int forEach(const char *text, int size, void *context, Take take);

std::vector<QByteArray> of(const QString &text);

} // namespace IndexWords
