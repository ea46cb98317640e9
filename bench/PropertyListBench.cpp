#include "XPPropertyList.h"

#include <QStringList>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <plist/plist.h>

// The values of a tag attribute. The baseline is libplist's tree of the same bytes, in this run.

static const QStringList &tags(qsizetype count)
{
    static const QStringList all{QStringLiteral("Work"), QStringLiteral("Taxes 2024"),
                                 QStringLiteral("Cafe\u0301"), QStringLiteral("to read")};
    static const QStringList three = all.first(3);
    return count == 3 ? three : all;
}

static QByteArray bytes(qsizetype count)
{
    return *XPPropertyList::writeBinary(PropertyValue(tags(count)));
}

static void decodeTags(benchmark::State &state)
{
    const QByteArray input = bytes(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(XPPropertyList::read(input));
}
BENCHMARK(decodeTags)->Name("PropertyList/decode")->Arg(3)->Arg(4);

static void decodeTagsByLibplist(benchmark::State &state)
{
    const QByteArray input = bytes(state.range(0));
    for (auto _ : state) {
        plist_t tree = nullptr;
        plist_from_bin(input.constData(), static_cast<uint32_t>(input.size()), &tree);
        benchmark::DoNotOptimize(tree);
        plist_free(tree);
    }
}
BENCHMARK(decodeTagsByLibplist)->Name("PropertyList/decode/libplist")->Arg(3)->Arg(4);

static void encodeTags(benchmark::State &state)
{
    const PropertyValue value(tags(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(XPPropertyList::writeBinary(value));
}
BENCHMARK(encodeTags)->Name("PropertyList/encode")->Arg(3)->Arg(4);

static void encodeTagsByLibplist(benchmark::State &state)
{
    const plist_t tree = plist_new_array();
    for (const QString &tag : tags(state.range(0)))
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
BENCHMARK(encodeTagsByLibplist)->Name("PropertyList/encode/libplist")->Arg(3)->Arg(4);
