#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <vector>

// The words that made-up files are named and filled with. The same on every machine.
namespace IndexCorpusWords {

// A small generator whose numbers are the same everywhere (splitmix64).
class Random
{
public:
    explicit Random(quint64 seed) : m_state(seed) {}
    quint64 next();
    quint32 below(quint32 limit) { return static_cast<quint32>((next() >> 32) * limit >> 32); }
    bool percent(quint32 chance) { return below(100) < chance; }
    double unit() { return static_cast<double>(next() >> 11) * 0x1p-53; } // 0 ≤ x < 1
    // 0 ≤ rank < limit, each with a chance of about 1 / (rank + 1).
    quint32 zipf(quint32 limit);

private:
    quint64 m_state;
};

// English and German words, the most frequent first: a few hundred that people use in documents,
// the rest made of syllables.
constexpr quint32 vocabularySize = 30'000;
const QStringList &vocabulary();

// Extensions as a home folder has them; each of `limit` text formats or of all.
QByteArray extension(Random &random, bool text);
bool isTextExtension(const QByteArray &extension);

// A name as people and programs give it, extension included, 22 bytes in the mean; one in ten
// holds letters outside ASCII.
QByteArray fileName(Random &random, const QByteArray &extension);
QByteArray folderName(Random &random);

// About `bytes` of prose, with headings and paragraphs.
QByteArray prose(Random &random, int bytes);

// Of 500 tags, by how often it is used.
constexpr quint32 tagCount = 500;
QString tag(quint32 rank);

} // namespace IndexCorpusWords
