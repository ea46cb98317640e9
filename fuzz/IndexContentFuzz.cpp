// Any text may be split into words.
#include "IndexWords.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    // Words are folded, of a limited length, and words again when split once more.
    IndexWords::forEach(
        bytes.constData(), static_cast<int>(size), nullptr,
        [](void *, const char *word, int length, int start, int end) {
            if (length <= 0 || length > IndexWords::longestWord || start < 0 || end < start)
                std::abort();
            const std::vector<QByteArray> again = IndexWords::of(QString::fromUtf8(word, length));
            if (again.size() != 1 || again.front() != QByteArrayView(word, length))
                std::abort();
            return 0;
        });
    return 0;
}
