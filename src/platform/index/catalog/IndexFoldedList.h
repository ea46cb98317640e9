#pragma once

#include "IndexTextPattern.h"

#include <QByteArray>
#include <functional>
#include <vector>

// A pattern made ready to be looked for in folded lists.
class IndexNeedle
{
public:
    explicit IndexNeedle(const IndexTextPattern &pattern);

    // Whether the folded text alone decides, for every text.
    bool decides() const { return m_decided; }
    // The same where the text itself is ASCII: it has no marks that could differ.
    bool decidesAscii() const { return m_decidesAscii; }
    // Where decidesAscii() holds: whether the name has the very letters of an ASCII pattern in the
    // right place, whatever else is in it. Otherwise it may match all the same.
    bool standsIn(QByteArrayView name) const;
    bool isEmpty() const { return m_bytes.isEmpty(); } // nothing to look for: each text is verified
    QByteArrayView bytes() const { return m_bytes; }

    enum class Verdict { Matches, Fails, Unknown };
    Verdict verdict(const char *hit) const; // a place where bytes() stands, in a folded list

private:
    QByteArray m_bytes;
    bool m_decided = false;
    bool m_decidesAscii = false;
    bool m_words = false; // what stands around a hit often decides
    bool m_wholeWord = false;
};

// Folded texts one after the other in one piece of memory, a zero before and behind each, so that
// one pass finds a word in all of them.
//
// A text here is UTF-8 of foldText(): without case and marks. None holds a zero.
// Threads: as its owner.
class IndexFoldedList
{
public:
    IndexFoldedList() : m_bytes(1, '\0'), m_starts(1, 1) {}

    quint32 size() const { return static_cast<quint32>(m_starts.size() - 1); }
    void append(QByteArrayView folded);
    QByteArrayView at(quint32 row) const
    {
        return {m_bytes.constData() + m_starts[row], m_starts[row + 1] - m_starts[row] - 1};
    }
    const QByteArray &bytes() const { return m_bytes; }
    const std::vector<quint32> &starts() const { return m_starts; }
    void squeeze();

    // The rows whose text the pattern matches, ascending, appended to `rows` with `base` added.
    // What the folded text alone cannot decide is put to `verify`.
    using Verify = std::function<bool(quint32 row)>;
    void find(const IndexNeedle &needle, quint32 base, const Verify &verify,
              std::vector<quint32> &rows) const;
    // The same for one row.
    bool matches(const IndexNeedle &needle, quint32 row, const Verify &verify) const;

    // The two columns as they are saved; restore() refuses what does not fit together.
    bool restore(QByteArray bytes, std::vector<quint32> starts);

    // The folded form of a text, or of a name's bytes, as stored here.
    static QByteArray foldedText(const QString &text);
    static QByteArray foldedName(QByteArrayView name);

private:
    quint32 rowAt(quint32 offset, quint32 from) const;

    QByteArray m_bytes;
    std::vector<quint32> m_starts; // size() + 1 of them
};
