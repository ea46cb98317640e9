#pragma once

#include <QByteArrayView>
#include <functional>

// Visits the places where `needle` stands in `haystack`, ascending. found() gets a place and says
// from where on to look for the next. Compares the needle's first and last byte over 32 positions
// at a time where the processor can (chosen at run time), so that a million names take a
// millisecond or two. An empty needle stands nowhere. Any thread.
template <typename Found>
void indexScan(QByteArrayView haystack, QByteArrayView needle, Found &&found);

// The next place at or behind `from`; haystack.size() when there is none.
size_t indexScanNext(QByteArrayView haystack, QByteArrayView needle, size_t from);

template <typename Found>
void indexScan(QByteArrayView haystack, QByteArrayView needle, Found &&found)
{
    const auto size = static_cast<size_t>(haystack.size());
    for (size_t at = 0; (at = indexScanNext(haystack, needle, at)) < size;)
        at = std::max<size_t>(at + 1, found(static_cast<quint32>(at)));
}
