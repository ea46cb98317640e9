#pragma once

#include <QCache>
#include <QColor>
#include <QImage>

// Badges, the small labels that are put on pictures: numbers and tags, each drawn once for a
// height and kept as a file.
//
// They are looked for in memory, in a folder that comes with the program (where a packager may put
// better ones), and in a writable one; what is in neither is drawn and kept in the writable one,
// of which no more is used than `maximumFiles` at the program's start.
// Heights are device pixels; a badge is as wide as its text, at least as wide as it is high.
// Threads: main, with a QGuiApplication. What cannot be read or written is drawn again.
class KPBadgeCache
{
public:
    static constexpr int maximumFiles = 500;

    static KPBadgeCache &instance();

    // Either may be missing or empty. The usual: "badges" in ourApplicationSupport(), and
    // "murn/badges" where the program's data is installed.
    void setFolders(const QString &readOnly, const QString &writable);
    static QString readOnlyFolder();
    static QString writableFolder();

    QImage numberBadge(qint64 number, int height);
    // A tag's name as plain text, cut at 24 letters.
    QImage tagBadge(const QString &tag, int height);

    // File names without ".png", for who makes badges for the read-only folder.
    static QString numberName(qint64 number, int height);   // "number-12-60"
    static QString tagName(const QString &tag, int height); // "tag-MD5-24", of the UTF-8 text

private:
    QImage badge(const QString &name, const QString &text, int height, QColor fill);
    QImage kept(const QString &name) const;

    QString m_readOnly;
    QString m_writable;
    QCache<QString, QImage> m_badges{4 << 20}; // cost in bytes
};
