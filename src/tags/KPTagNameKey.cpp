#include "KPTagNameKey.h"

#include "XPText.h"

#include <algorithm>

QStringView KPTagNameKey::prefixOf(QStringView key)
{
    for (const QStringView prefix : {userPrefix, fileTypePrefix, readOnlyPrefix}) {
        if (key.startsWith(prefix))
            return prefix;
    }
    return {};
}

void KPTagNameKey::append(Buffer &buffer, QStringView text)
{
    buffer.append(text.utf16(), text.size());
}

void KPTagNameKey::appendCleaned(Buffer &buffer, QStringView text)
{
    while (text.startsWith(u' '))
        text = text.sliced(1);
    while (text.endsWith(u' '))
        text.chop(1);
    const qsizetype start = buffer.size();
    for (const QChar unit : text) {
        if (unit == u'\n' || unit == u'\r')
            continue;
        buffer.append(unit.unicode());
        // Looked for in what is written, as "%20" counts with its line breaks taken out.
        if (unit == u'0' && textOf(buffer).sliced(start).endsWith(u"%20")) {
            buffer.resize(buffer.size() - 2);
            buffer.back() = u' ';
        }
    }
}

static void makeLowerCase(KPTagNameKey::Buffer &buffer, qsizetype start)
{
    char16_t all = 0;
    for (char16_t &unit : buffer) {
        all |= unit;
        if (unit >= u'A' && unit <= u'Z')
            unit |= 0x20;
    }
    if (all < 0x80)
        return;
    const QString lower = lowerCase(QString::fromRawData(
        reinterpret_cast<const QChar *>(buffer.data()) + start, buffer.size() - start));
    buffer.resize(start);
    KPTagNameKey::append(buffer, lower);
}

KPTagNameKey::Buffer KPTagNameKey::forRawText(QStringView prefix, QStringView text)
{
    Buffer key;
    append(key, prefix);
    appendCleaned(key, text);
    if (key.size() == prefix.size())
        return {};
    makeLowerCase(key, prefix.size());
    return key;
}
