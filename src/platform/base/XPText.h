#pragma once

#include <QString>

// Unicode forms of text, by ICU. Two of them fold case and are not interchangeable:
// lowerCase() keeps ß apart from ss (keys: two tags), foldText() does not (queries: one finds
// the other). Any thread. Lone surrogates (undecodable bytes of a file name) pass unchanged.

// Canonical decomposition (NFD). Text that is decomposed already is returned as it is, shared.
QString decomposed(const QString &text);

// Full lower case in the root locale, never the user's: no Turkish i.
QString lowerCase(const QString &text);

enum class FoldText {
    None = 0,
    Case = 1,       // the modifier c: full case folding (ß is ss)
    Diacritics = 2, // the modifier d: combining marks dropped after decomposition
    CaseAndDiacritics = 3,
};

// For comparison in queries: always decomposed, then folded as asked.
QString foldText(const QString &text, FoldText how = FoldText::CaseAndDiacritics);
