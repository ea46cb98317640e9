#include "LinkText.h"

#include "DocumentFacts.h"
#include "FlowText.h"
#include "TextDecoding.h"
#include "XPPropertyList.h"

bool LinkText::readList(QByteArrayView bytes, DocumentAnswer &answer)
{
    const auto list = XPPropertyList::read(bytes);
    if (!list || list->kind() != PropertyValue::Kind::Dictionary)
        return false;
    const auto &values = list->dictionary();
    DocumentFacts facts(answer);
    FlowText flow(answer.text);
    facts.setTitle(values.value(QStringLiteral("Name")).string());
    facts.setText(DocumentFacts::url, values.value(QStringLiteral("URL")).string());
    for (const char *key : {"Name", "URL"}) {
        flow.append(values.value(QString::fromLatin1(key)).string());
        flow.endLine();
    }
    return answer.attributes.contains(DocumentFacts::url) || !answer.title.isEmpty();
}

// Only these say something to a person; the rest are commands, numbers and switches.
static bool isForPeople(QByteArrayView key)
{
    return key == "name" || key == "genericname" || key == "comment" || key == "keywords" ||
           key == "url";
}

bool LinkText::readKeys(QByteArrayView bytes, DocumentAnswer &answer)
{
    const QByteArray text = TextDecoding::detect(bytes).toUtf8();
    DocumentFacts facts(answer);
    FlowText flow(answer.text);
    bool isLink = false;
    bool isMain = false; // actions of a program have groups of their own
    for (qsizetype at = 0; at < text.size() && !flow.isFull();) {
        qsizetype end = text.indexOf('\n', at);
        end = end < 0 ? text.size() : end;
        const QByteArray line = text.mid(at, end - at).trimmed();
        at = end + 1;
        if (line.startsWith('[')) {
            isMain = line == "[InternetShortcut]" || line == "[Desktop Entry]";
            isLink = isLink || isMain;
        }
        const qsizetype equals = line.indexOf('=');
        if (!isMain || line.startsWith('#') || equals <= 0)
            continue;
        const QByteArray full = line.first(equals).trimmed().toLower();
        const qsizetype bracket = full.indexOf('[');
        const QByteArray key = bracket < 0 ? full : full.first(bracket); // "[de]" is a language
        const QString value = QString::fromUtf8(line.mid(equals + 1).trimmed());
        if (!isForPeople(key))
            continue;
        flow.append(value);
        flow.endLine();
        if (full == "name")
            facts.setTitle(value);
        else if (full == "comment")
            facts.setText(DocumentFacts::description, value);
        else if (full == "keywords")
            facts.addList(DocumentFacts::keywords, value);
        else if (full == "url")
            facts.setText(DocumentFacts::url, value);
    }
    return isLink;
}
