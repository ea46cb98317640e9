#include "IndexScan.h"

#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

// From `start` on, byte by byte: the tail of a vectorised scan, and machines without one.
static void scanPlain(const char *text, size_t size, const char *needle, size_t length,
                      size_t start, std::vector<quint32> &out)
{
    while (start + length <= size) {
        const void *found = std::memchr(text + start, needle[0], size - length - start + 1);
        if (!found)
            return;
        const auto at = static_cast<size_t>(static_cast<const char *>(found) - text);
        if (std::memcmp(text + at, needle, length) == 0)
            out.push_back(static_cast<quint32>(at));
        start = at + 1;
    }
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) static void scanAvx2(const char *text, size_t size,
                                                     const char *needle, size_t length,
                                                     std::vector<quint32> &out)
{
    const __m256i first = _mm256_set1_epi8(needle[0]);
    const __m256i last = _mm256_set1_epi8(needle[length - 1]);
    size_t at = 0;
    for (; at + length + 31 <= size; at += 32) {
        const __m256i heads = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(text + at));
        const __m256i tails =
            _mm256_loadu_si256(reinterpret_cast<const __m256i *>(text + at + length - 1));
        auto mask = static_cast<quint32>(_mm256_movemask_epi8(
            _mm256_and_si256(_mm256_cmpeq_epi8(heads, first), _mm256_cmpeq_epi8(tails, last))));
        while (mask) {
            const size_t candidate = at + static_cast<size_t>(__builtin_ctz(mask));
            if (length < 3 || std::memcmp(text + candidate + 1, needle + 1, length - 2) == 0)
                out.push_back(static_cast<quint32>(candidate));
            mask &= mask - 1;
        }
    }
    scanPlain(text, size, needle, length, at, out);
}
#endif

void indexScan(QByteArrayView haystack, QByteArrayView needle, std::vector<quint32> &out)
{
    const auto size = static_cast<size_t>(haystack.size());
    const auto length = static_cast<size_t>(needle.size());
    if (length == 0 || length > size)
        return;
#if defined(__x86_64__)
    static const bool hasAvx2 = __builtin_cpu_supports("avx2");
    if (hasAvx2) {
        scanAvx2(haystack.data(), size, needle.data(), length, out);
        return;
    }
#endif
    scanPlain(haystack.data(), size, needle.data(), length, 0, out);
}
