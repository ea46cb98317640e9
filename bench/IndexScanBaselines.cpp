// IndexBaselines: passes over memory.
#include "IndexBaselines.h"
#include "Karvex.h"

#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace IndexBaselines {

static constexpr size_t width = 32;

NameBlob::NameBlob(const IndexCatalog &catalog)
{
    const IndexCatalog::Reading reading(catalog);
    for (const quint32 slot : catalog.alive().rows()) {
        const QByteArrayView name = catalog.chunkOf(slot).foldedName(IndexCatalog::rowOf(slot));
        m_bytes.insert(m_bytes.end(), name.begin(), name.end());
        m_bytes.push_back('\0');
    }
    m_bytes.resize(m_bytes.size() + 2 * width); // room behind for whole steps
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) static size_t countAvx2(const char *text, size_t size,
                                                        const char *needle, size_t length)
{
    const __m256i first = _mm256_set1_epi8(needle[0]);
    const __m256i last = _mm256_set1_epi8(needle[length - 1]);
    size_t hits = 0;
    for (size_t at = 0; at + length + width <= size; at += width) {
        const __m256i heads = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(text + at));
        const __m256i tails =
            _mm256_loadu_si256(reinterpret_cast<const __m256i *>(text + at + length - 1));
        auto mask = static_cast<quint32>(_mm256_movemask_epi8(
            _mm256_and_si256(_mm256_cmpeq_epi8(heads, first), _mm256_cmpeq_epi8(tails, last))));
        for (; mask; mask &= mask - 1) {
            const char *candidate = text + at + __builtin_ctz(mask);
            hits += std::memcmp(candidate, needle, length) == 0;
        }
    }
    return hits;
}

__attribute__((target("avx2"))) static __m256i load(const void *at)
{
    return _mm256_loadu_si256(static_cast<const __m256i *>(at));
}

__attribute__((target("avx2"))) static size_t countAvx2(const quint16 *types, const quint8 *ratings,
                                                        const quint8 *marks, const quint16 *days,
                                                        size_t size, quint16 type, quint8 rating,
                                                        quint8 mark, quint16 day)
{
    const __m256i wantedType = _mm256_set1_epi16(static_cast<short>(type));
    const __m256i wantedRating = _mm256_set1_epi8(static_cast<char>(rating));
    const __m256i wantedMark = _mm256_set1_epi8(static_cast<char>(mark));
    const __m256i after = _mm256_set1_epi16(static_cast<short>(day));
    size_t hits = 0;
    for (size_t row = 0; row + width <= size; row += width) {
        const __m256i sixteen[2] = {
            _mm256_and_si256(_mm256_cmpeq_epi16(load(types + row), wantedType),
                             _mm256_cmpgt_epi16(load(days + row), after)),
            _mm256_and_si256(_mm256_cmpeq_epi16(load(types + row + 16), wantedType),
                             _mm256_cmpgt_epi16(load(days + row + 16), after))};
        // Packing goes by halves of the register.
        const __m256i both = _mm256_permute4x64_epi64(_mm256_packs_epi16(sixteen[0], sixteen[1]),
                                                      _MM_SHUFFLE(3, 1, 2, 0));
        const __m256i stars = load(ratings + row);
        const __m256i match = _mm256_and_si256(
            _mm256_and_si256(both, _mm256_cmpeq_epi8(load(marks + row), wantedMark)),
            _mm256_cmpeq_epi8(_mm256_max_epu8(stars, wantedRating), stars));
        hits += static_cast<size_t>(
            __builtin_popcount(static_cast<quint32>(_mm256_movemask_epi8(match))));
    }
    return hits;
}
#endif

size_t NameBlob::count(QByteArrayView needle) const
{
    const auto length = static_cast<size_t>(needle.size());
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2"))
        return countAvx2(m_bytes.data(), m_bytes.size(), needle.data(), length);
#endif
    size_t hits = 0;
    const char *at = m_bytes.data();
    const char *const end = at + m_bytes.size();
    while (const void *found = ::memmem(at, static_cast<size_t>(end - at), needle.data(), length)) {
        ++hits;
        at = static_cast<const char *>(found) + 1;
    }
    return hits;
}

quint16 PackedColumns::dayOf(qint64 nanoseconds)
{
    return static_cast<quint16>(std::max<qint64>(nanoseconds, 0) / 1'000'000'000 / 86400);
}

PackedColumns::PackedColumns(const IndexCatalog &catalog)
{
    const IndexCatalog::Reading reading(catalog);
    m_types = catalog.types();
    for (const quint32 slot : catalog.alive().rows()) {
        const IndexRecord record = catalog.record(slot);
        m_type.push_back(typeNumber(record.type));
        m_day.push_back(dayOf(record.info.modified));
        m_rating.push_back(
            static_cast<quint8>(record.attributes.value(Karvex::starRatingKey).doubleValue()));
        m_managed.push_back(record.attributes.value(Karvex::managedKey).boolValue());
    }
    const size_t padded = (m_type.size() + width - 1) / width * width;
    m_type.resize(padded, typeNumber({}));
    m_day.resize(padded);
    m_rating.resize(padded);
    m_managed.resize(padded);
}

quint16 PackedColumns::typeNumber(const QString &type) const
{
    const auto found = std::find(m_types.begin(), m_types.end(), type);
    return static_cast<quint16>(found == m_types.end() ? 0xFFFF : found - m_types.begin());
}

size_t PackedColumns::count(quint16 type, quint8 rating, bool managed, quint16 day) const
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2"))
        return countAvx2(m_type.data(), m_rating.data(), m_managed.data(), m_day.data(),
                         m_type.size(), type, rating, managed, day);
#endif
    size_t hits = 0;
    for (size_t row = 0; row < m_type.size(); ++row)
        hits += m_type[row] == type && m_rating[row] >= rating &&
                        m_managed[row] == static_cast<quint8>(managed) && m_day[row] > day
                    ? 1U
                    : 0U;
    return hits;
}

} // namespace IndexBaselines
