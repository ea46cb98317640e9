#include "IndexScan.h"

#include <algorithm>
#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

// Byte by byte: the tail of a vectorised scan, and machines without one.
static size_t nextPlain(const char *text, size_t size, const char *needle, size_t length,
                        size_t from, size_t end)
{
    end = std::min(end, size - length + 1); // of the places where it may begin
    while (from < end) {
        const void *found = std::memchr(text + from, needle[0], end - from);
        if (!found)
            break;
        const auto at = static_cast<size_t>(static_cast<const char *>(found) - text);
        if (std::memcmp(text + at, needle, length) == 0)
            return at;
        from = at + 1;
    }
    return size;
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) static size_t
nextAvx2(const char *text, size_t size, const char *needle, size_t length, size_t from, size_t end)
{
    const __m256i first = _mm256_set1_epi8(needle[0]);
    const __m256i last = _mm256_set1_epi8(needle[length - 1]);
    for (; from < end && from + length + 31 <= size; from += 32) {
        const auto *const heads = reinterpret_cast<const __m256i *>(text + from);
        const auto *const tails = reinterpret_cast<const __m256i *>(text + from + length - 1);
        auto mask = static_cast<quint32>(_mm256_movemask_epi8(
            _mm256_and_si256(_mm256_cmpeq_epi8(_mm256_loadu_si256(heads), first),
                             _mm256_cmpeq_epi8(_mm256_loadu_si256(tails), last))));
        for (; mask; mask &= mask - 1) {
            const size_t at = from + static_cast<size_t>(__builtin_ctz(mask));
            if (length < 3 || std::memcmp(text + at + 1, needle + 1, length - 2) == 0)
                return at < end ? at : size;
        }
    }
    return nextPlain(text, size, needle, length, from, end);
}
#endif

size_t indexScanNext(QByteArrayView haystack, QByteArrayView needle, size_t from, size_t end)
{
    const auto size = static_cast<size_t>(haystack.size());
    const auto length = static_cast<size_t>(needle.size());
    if (length == 0 || length > size)
        return size;
#if defined(__x86_64__)
    static const bool hasAvx2 = __builtin_cpu_supports("avx2");
    if (hasAvx2)
        return nextAvx2(haystack.data(), size, needle.data(), length, from, end);
#endif
    return nextPlain(haystack.data(), size, needle.data(), length, from, end);
}
