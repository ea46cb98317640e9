#include "MurnBench.h"
#include "XPPropertyList.h"

#include <QStringList>
#include <cstdlib>
#include <plist/plist.h>

// The value of a tag attribute. The baseline is libplist's tree of the same bytes.

static QStringList tags(qsizetype count)
{
    const QStringList all{QStringLiteral("Work"), QStringLiteral("Taxes 2024"),
                          QStringLiteral("Cafe\u0301"), QStringLiteral("to read")};
    return all.first(count);
}

static void decode(benchmark::State &state, qsizetype count)
{
    const QByteArray input = *XPPropertyList::writeBinary(tags(count));
    for (auto _ : state)
        benchmark::DoNotOptimize(XPPropertyList::read(input));
}

static void decodeThreeTags(benchmark::State &state)
{
    decode(state, 3);
}
BENCHMARK(decodeThreeTags);

static void decodeFourTags(benchmark::State &state)
{
    decode(state, 4);
    XPBench::speedAtLeast(state, 3);
}
BENCHMARK(decodeFourTags);

static void decodeByLibplist(benchmark::State &state)
{
    const QByteArray input = *XPPropertyList::writeBinary(tags(4));
    for (auto _ : state) {
        plist_t tree = nullptr;
        plist_from_bin(input.constData(), static_cast<uint32_t>(input.size()), &tree);
        benchmark::DoNotOptimize(tree);
        plist_free(tree);
    }
}
BENCHMARK(decodeByLibplist)->Name("decodeFourTags/baseline");

static void encodeFourTags(benchmark::State &state)
{
    const PropertyValue value(tags(4));
    for (auto _ : state)
        benchmark::DoNotOptimize(XPPropertyList::writeBinary(value));
}
BENCHMARK(encodeFourTags);

static void encodeByLibplist(benchmark::State &state)
{
    const plist_t tree = plist_new_array();
    for (const QString &tag : tags(4))
        plist_array_append_item(tree, plist_new_string(tag.toUtf8().constData()));
    for (auto _ : state) {
        char *output = nullptr;
        uint32_t size = 0;
        plist_to_bin(tree, &output, &size);
        benchmark::DoNotOptimize(output);
        std::free(output);
    }
    plist_free(tree);
}
BENCHMARK(encodeByLibplist)->Name("encodeFourTags/baseline");
