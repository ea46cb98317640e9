#pragma once

#include <QStringView>
#include <QVarLengthArray>

// The parts of a tag's key, and the key made from a text without touching the heap where that
// is possible: tags are looked up for every document of every result.
namespace KPTagNameKey {

inline constexpr QStringView userPrefix = u"user:";
inline constexpr QStringView fileTypePrefix = u"uti:";
inline constexpr QStringView readOnlyPrefix = u"read:";

// The kind's prefix of a key (or of a text that could be one); empty when it has none.
QStringView prefixOf(QStringView key);

using Buffer = QVarLengthArray<char16_t, 256>;
inline QStringView textOf(const Buffer &buffer)
{
    return {buffer.data(), buffer.size()};
}

void append(Buffer &buffer, QStringView text);
// The clean form of raw tag text: see KPTagName::CleanAndTrimTag.
void appendCleaned(Buffer &buffer, QStringView text);
// The prefix and the lower case of the cleaned text; empty when there is no text left.
Buffer forRawText(QStringView prefix, QStringView text);

} // namespace KPTagNameKey
