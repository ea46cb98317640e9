#pragma once

#include <QByteArrayView>
#include <QString>
#include <array>
#include <cstring>

// The short strings that the calling thread decoded lately, by their bytes in the binary format.
// The same tags stand on file after file: sharing their text is cheaper than allocating it anew
// and leaves one copy in memory. A string that collides with another takes its place.
// Threads: each has its own; the texts may go anywhere.
class XPPropertyListRecentTexts
{
public:
    class Entry
    {
    public:
        bool isFor(QByteArrayView object) const
        {
            return m_size == object.size() &&
                   std::memcmp(m_object.data(), object.data(), size_t(object.size())) == 0;
        }
        const QString &text() const { return m_text; }

        void set(QByteArrayView object, const QString &text)
        {
            m_size = quint8(object.size());
            std::memcpy(m_object.data(), object.data(), size_t(object.size()));
            m_text = text;
        }

    private:
        friend class XPPropertyListRecentTexts;
        quint8 m_size = 0;
        std::array<char, 31> m_object{};
        QString m_text;
    };

    // Where `object` (marker and payload, so never empty) is or would be; null when it is too
    // long to be kept, and when the thread is over but for what the process does at its end.
    static Entry *entryFor(QByteArrayView object)
    {
        if (object.size() > qsizetype(sizeof(Entry::m_object)) || s_areGone)
            return nullptr;
        static thread_local Entries entries;
        constexpr quint64 golden = 0x9E3779B97F4A7C15; // spreads every bit to the top
        return &entries.all[(endsOf(object) * golden) >> 54];
    }

private:
    struct Entries
    {
        ~Entries() { s_areGone = true; }
        std::array<Entry, 1024> all;
    };
    static inline thread_local bool s_areGone = false; // has no destructor, so it can still be read

    template <typename Word>
    static Word load(const char *from)
    {
        Word word;
        std::memcpy(&word, from, sizeof(word));
        return word;
    }

    // Every byte of up to 16, which may be counted twice; the ends of longer ones.
    static quint64 endsOf(QByteArrayView object)
    {
        const char *first = object.data();
        const char *end = first + object.size();
        if (object.size() >= 8)
            return load<quint64>(first) ^ (load<quint64>(end - 8) * 31);
        if (object.size() >= 4)
            return load<quint32>(first) | quint64(load<quint32>(end - 4)) << 32;
        return quint64(quint8(*first)) << 16 | quint64(quint8(first[object.size() / 2])) << 8 |
               quint8(end[-1]);
    }
};
