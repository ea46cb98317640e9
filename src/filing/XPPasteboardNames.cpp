// XPPasteboardSupport: names for what is imported.
#include "XPFileUtils.h"
#include "XPPasteboardSupport.h"

#include <QCoreApplication>

static constexpr qsizetype subjectLength = 60;
static constexpr qsizetype titleLength = 50;
static constexpr qsizetype shortestTitle = 3;

// Never half a character.
static QString beginning(const QString &text, qsizetype most)
{
    QString begun = text.left(most);
    if (!begun.isEmpty() && begun.back().isHighSurrogate())
        begun.chop(1);
    return begun;
}

std::optional<QString> XPPasteboardSupport::findSubject(const QString &text)
{
    static const QString mark = QStringLiteral("Subject:");
    const qsizetype at = text.indexOf(mark);
    if (at < 0)
        return {};
    const QString subject = beginning(text.mid(at + mark.size(), subjectLength), subjectLength);
    return subject.section(u'\n', 0, 0);
}

QString XPPasteboardSupport::cleanupDocTitle(QString title)
{
    for (QChar &character : title) {
        const bool isPathLike = character == u':' || character == u'/' || character == u'\\';
        if (isPathLike || character.category() == QChar::Other_Control)
            character = u' ';
    }
    title = title.trimmed();
    while (title.startsWith(u'.'))
        title.remove(0, 1);
    while (title.endsWith(u'.'))
        title.chop(1);
    return title;
}

QString XPPasteboardSupport::titleOf(const QString &text)
{
    QString title = findSubject(text).value_or(beginning(text, titleLength));
    if (title.size() >= shortestTitle)
        title = cleanupDocTitle(title);
    // What is left of a title of dots and strokes is none either.
    return title.size() < shortestTitle || title.trimmed().isEmpty() ? qtTrId("KPDocumentTitle")
                                                                     : title;
}

QString XPPasteboardSupport::findDestinationPath(const QString &text, const QString &folder)
{
    return XPFileUtils::findUnusedPath(folder + u'/' + titleOf(text));
}
