#pragma once

#include "XPError.h"

#include <QByteArray>
#include <QMap>
#include <functional>

class DocumentSource;

// The parts that a reader wants of a document that is a ZIP archive (office files, books).
//
// A hostile archive gets no further than the limits: entries beyond them, a part that grows more
// than a ratio allows, or all parts together, are Kind::TooLarge, whatever sizes are stated.
// Parts are read once, in the archive's order; nothing is written anywhere.
// Threads: any; the source's descriptor is read and its offset moved.
class ZipPackage
{
public:
    struct Limits
    {
        int entries = 20'000;
        qint64 partBytes = 32 << 20;
        qint64 totalBytes = 96 << 20;
        // A part over a megabyte may be so many times as large as the whole file.
        int ratio = 200;
    };
    using Wanted = std::function<bool(QByteArrayView name)>;

    // Encrypted parts are left out and noted. Fails with Kind::Malformed when it is no archive.
    static XPResult<ZipPackage> read(const DocumentSource &source, const Wanted &wanted,
                                     const Limits &limits);
    static XPResult<ZipPackage> read(const DocumentSource &source, const Wanted &wanted)
    {
        return read(source, wanted, Limits());
    }

    // Empty when there is no such part.
    QByteArray part(const QByteArray &name) const { return m_parts.value(name); }
    bool hasPart(const QByteArray &name) const { return m_parts.contains(name); }
    // The wanted parts by name, in order of their names with numbers counted as numbers.
    const QList<QByteArray> &names() const { return m_names; }
    bool hasEncryptedParts() const { return m_hasEncryptedParts; }
    // Set when a limit or damage ended the reading; the parts before it are there.
    const std::optional<XPError> &ending() const { return m_ending; }

    // The part that a relative reference in another part leads to ("../media/x.png" in
    // "ppt/slides/slide1.xml" is "ppt/media/x.png"); empty when it leads outside.
    static QByteArray resolved(const QByteArray &from, const QByteArray &reference);

private:
    QMap<QByteArray, QByteArray> m_parts;
    QList<QByteArray> m_names;
    bool m_hasEncryptedParts = false;
    std::optional<XPError> m_ending;
};
