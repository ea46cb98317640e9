// Saved columns: checksums keep out what was torn, the reader must refuse what was forged.
#include "IndexEvaluator.h"
#include "IndexFuzzCatalog.h"
#include "MDQueryParser.h"

#include <algorithm>
#include <cstdlib>
#include <fuzzer/FuzzedDataProvider.h>

static std::vector<quint32> numbers(const std::string &bytes)
{
    std::vector<quint32> values(bytes.size() / sizeof(quint32));
    std::copy_n(bytes.begin(), values.size() * sizeof(quint32),
                reinterpret_cast<char *>(values.data()));
    return values;
}

static void readEverything(const IndexCatalog &catalog)
{
    const IndexCatalog::Reading reading(catalog);
    static const MDPredicatePtr predicate = *MDQueryParser::parse(
        QStringLiteral("kMDItemDisplayName == \"*a*\"cd || kMDItemKXUserTags == \"w*\"cdw || "
                       "kMDItemContentTypeTree == public.data || kMDItemFSSize > 5 || * == 3 || "
                       "kMDItemPath == \"*h*\" || kMDItemSupportFileType != MDSystemFile"));
    (void)IndexEvaluator(catalog).rows(predicate);
    for (const quint32 slot : catalog.alive().rows()) {
        const IndexRecord record = catalog.record(slot);
        (void)catalog.path(slot);
        (void)catalog.type(slot);
        (void)catalog.below(slot);
        if (catalog.slotOf(record.item) != slot)
            std::abort();
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const std::string tables = input.ConsumeRandomLengthString();
    const std::string ranks = input.ConsumeRandomLengthString();
    const std::string bytes = input.ConsumeRemainingBytesAsString();
    IndexSegment::Reader in(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    IndexCatalog::Loading loading;
    while (!in.atEnd() && loading.chunks.size() < 3) {
        auto chunk = IndexChunk::read(in);
        if (!chunk)
            break;
        loading.chunks.push_back(std::make_unique<IndexChunk>(*std::move(chunk)));
    }
    IndexCatalog catalog;
    const QByteArray saved = QByteArray::fromStdString(tables);
    loading.nameRanks = numbers(ranks);
    if (!loading.readTables(saved) || catalog.load(std::move(loading)))
        return 0;
    readEverything(catalog);
    catalog.prepareForWriting();
    catalog.apply(fuzzBatch());
    catalog.orderNames();
    catalog.compact();
    readEverything(catalog);
    return 0;
}
