// The journal is read by other processes while it is written, and after a crash.
#include "IndexFuzzCatalog.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto batch = decodeIndexBatch(
        QByteArrayView(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    if (!batch)
        return 0;
    const QByteArray encoded = encodeIndexBatch(*batch);
    const auto again = decodeIndexBatch(encoded);
    if (!again || encodeIndexBatch(*again) != encoded)
        std::abort();
    // Numbers are given one by one. A batch that checks and yet holds one far beyond is forged,
    // and only wastes memory.
    for (const IndexChange &change : *batch) {
        if (change.record.item > 1'000'000 || change.record.parent > 1'000'000)
            return 0;
    }
    IndexCatalog catalog;
    catalog.apply(fuzzBatch());
    const qsizetype before = catalog.count();
    const std::vector<IndexItem> touched = catalog.apply(*batch);
    if (touched.size() > catalog.slotCount() + batch->size() ||
        catalog.count() > before + static_cast<qsizetype>(batch->size()))
        std::abort();
    for (const quint32 slot : catalog.alive().rows()) {
        const IndexRecord record = catalog.record(slot);
        if (catalog.slotOf(record.item) != slot || catalog.path(slot).size() > (1 << 22))
            std::abort();
    }
    return 0;
}
