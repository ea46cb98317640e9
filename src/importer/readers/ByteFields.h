#pragma once

#include <QByteArrayView>
#include <QtEndian>
#include <type_traits>

// Numbers at places of untrusted bytes: outside of them every number is 0, so that a format's
// reader checks a length once, where it matters, and cannot read what is not there.
// Threads: any.
namespace ByteFields {

template <typename Number>
bool has(QByteArrayView bytes, qint64 at)
{
    return at >= 0 && at <= bytes.size() - static_cast<qint64>(sizeof(Number));
}

template <typename Number>
Number little(QByteArrayView bytes, qint64 at)
{
    return has<Number>(bytes, at) ? qFromLittleEndian<Number>(bytes.data() + at) : Number{};
}

template <typename Number>
Number big(QByteArrayView bytes, qint64 at)
{
    return has<Number>(bytes, at) ? qFromBigEndian<Number>(bytes.data() + at) : Number{};
}

// The part of `bytes` from `at` that is there, at most `length` long.
inline QByteArrayView part(QByteArrayView bytes, qint64 at, qint64 length)
{
    if (at < 0 || at >= bytes.size() || length <= 0)
        return {};
    return bytes.sliced(at, std::min<qint64>(length, bytes.size() - at));
}

} // namespace ByteFields
