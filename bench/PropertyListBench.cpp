#include "MurnBench.h"
#include "XPPropertyList.h"

#include <QStringList>
#include <cstdlib>
#include <iterator>
#include <plist/plist.h>
#include <vector>

// The values of tag attributes. The baseline is libplist's tree of the same bytes.

static constexpr const char *words[] = {"Work",   "Taxes",     "Cafe\u0301",   "to read", "Invoice",
                                        "Family", "insurance", "Mu\u0308ller", "2024",    "Recipe"};

// Every tag of `vocabulary` is a word and a number.
static QStringList tags(size_t first, size_t count, size_t vocabulary)
{
    QStringList result;
    for (size_t i = first; i < first + count; ++i) {
        const size_t tag = i % vocabulary;
        result += QString::fromUtf8(words[tag % std::size(words)]) + u' ' +
                  QString::number(tag / std::size(words));
    }
    return result;
}

// The attributes of many files that share a vocabulary of tags.
static std::vector<QByteArray> attributes(size_t count, size_t vocabulary)
{
    std::vector<QByteArray> result;
    for (size_t file = 0; file < 1000; ++file)
        result.push_back(*XPPropertyList::writeBinary(tags(file * 7, count, vocabulary)));
    return result;
}

static void decode(benchmark::State &state, size_t count, size_t vocabulary)
{
    const std::vector<QByteArray> inputs = attributes(count, vocabulary);
    size_t next = 0;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(XPPropertyList::read(inputs[next]));
        next = (next + 1) % inputs.size();
    }
}

static void decodeByLibplist(benchmark::State &state, size_t count, size_t vocabulary)
{
    const std::vector<QByteArray> inputs = attributes(count, vocabulary);
    size_t next = 0;
    for ([[maybe_unused]] auto _ : state) {
        plist_t tree = nullptr;
        plist_from_bin(inputs[next].constData(), static_cast<uint32_t>(inputs[next].size()), &tree);
        benchmark::DoNotOptimize(tree);
        plist_free(tree);
        next = (next + 1) % inputs.size();
    }
}

static void decodeFourTags(benchmark::State &state)
{
    decode(state, 4, 4);
    XPBench::speedAtLeast(state, 3);
}
BENCHMARK(decodeFourTags);
BENCHMARK_CAPTURE(decodeByLibplist, , 4, 4)->Name("decodeFourTags/baseline");
BENCHMARK_CAPTURE(decode, , 3, 4)->Name("decodeThreeTags");

BENCHMARK_CAPTURE(decode, , 4, 100)->Name("decodeFourOfManyTags");
BENCHMARK_CAPTURE(decodeByLibplist, , 4, 100)->Name("decodeFourOfManyTags/baseline");

// Hardly a tag seen twice in a row: what the texts cost when they must be made.
BENCHMARK_CAPTURE(decode, , 4, 7000)->Name("decodeFourNewTags");
BENCHMARK_CAPTURE(decodeByLibplist, , 4, 7000)->Name("decodeFourNewTags/baseline");

static void encodeFourTags(benchmark::State &state)
{
    const PropertyValue value(tags(0, 4, 100));
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(XPPropertyList::writeBinary(value));
}
BENCHMARK(encodeFourTags);

static void encodeByLibplist(benchmark::State &state)
{
    const plist_t tree = plist_new_array();
    for (const QString &tag : tags(0, 4, 100))
        plist_array_append_item(tree, plist_new_string(tag.toUtf8().constData()));
    for ([[maybe_unused]] auto _ : state) {
        char *output = nullptr;
        uint32_t size = 0;
        plist_to_bin(tree, &output, &size);
        benchmark::DoNotOptimize(output);
        std::free(output);
    }
    plist_free(tree);
}
BENCHMARK(encodeByLibplist)->Name("encodeFourTags/baseline");
