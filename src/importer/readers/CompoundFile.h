#pragma once

#include "XPError.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <vector>

class DocumentSource;

// The streams of a compound file ([MS-CFB], versions 3 and 4), the container of older office
// documents: those of its root storage; embedded documents are not looked into.
//
// Chains of sectors are followed at most as far as the file has sectors, so a loop ends.
// Threads: a value that refers to the source, which must outlive it.
class CompoundFile
{
public:
    // Kind::Malformed when it is none.
    static XPResult<CompoundFile> open(const DocumentSource &source);

    bool hasStream(const QString &name) const { return m_streams.contains(name); }
    const QStringList &names() const { return m_names; }
    // As much of the stream as there is, at most `limit` bytes; empty: no such stream.
    QByteArray stream(const QString &name, qint64 limit) const;

private:
    struct Stream
    {
        quint32 start = 0;
        quint64 size = 0;
    };

    explicit CompoundFile(const DocumentSource &source) : m_source(&source) {}
    bool readTable(const QByteArray &header);
    void readDirectory(quint32 start);
    void addEntries(const QByteArray &directory);
    quint32 next(quint32 sector) const;
    QByteArray chain(quint32 start, qint64 limit) const;
    QByteArray smallChain(quint32 start, qint64 limit) const;

    const DocumentSource *m_source;
    qint64 m_sectorSize = 512;
    std::vector<quint32> m_table;      // the sector after each one
    std::vector<quint32> m_smallTable; // the same for the sectors of 64 bytes
    QByteArray m_smallSectors;
    quint64 m_smallBelow = 4096; // streams shorter than this lie in small sectors
    QHash<QString, Stream> m_streams;
    QStringList m_names;
};
