#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>
#include <optional>
#include <utility>

// A PNG file with texts (ISO/IEC 15948), as thumbnails are: small, and with tEXt chunks as they
// are, since some programs read no others. Texts may be tEXt or zTXt when read.
// Threads: a value; reading and writing are blocking file calls.
class KPPngFile
{
public:
    using Texts = QList<std::pair<QByteArray, QByteArray>>; // Latin-1

    // A regular file of the user's own, of a thumbnail's size; no link. Nothing: there is none.
    static std::optional<KPPngFile> read(const QString &path);
    // Written beside it and renamed, readable by the user alone; folders are made the same way.
    // `name` begins with a slash. It is not waited for that it is on the disk: half a file is
    // recognised and made again. False: it was not written, and nothing is left of it.
    static bool write(const QString &folder, const QString &name, const QImage &image,
                      const Texts &texts);

    QByteArray text(const char *key) const; // empty: none
    // Null when it is damaged or larger than that.
    QImage image(int maximumSide) const;
    qint64 modified() const { return m_modified; } // the file itself; seconds since 1970

private:
    void readTexts();

    QByteArray m_bytes;
    Texts m_texts;
    qint64 m_modified = 0;
};
