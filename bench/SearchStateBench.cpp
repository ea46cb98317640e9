// A search state's tests over 100,000 documents, and the making of its query text.
#include "IndexText.h"
#include "KPDocCache.h"
#include "KPDocMetaData.h"
#include "KPSearchState.h"
#include "MurnBench.h"

#include "IndexCatalog.h"
#include "IndexSource.h"

#include <QCoreApplication>
#include <sys/stat.h>

static constexpr int docCount = 100'000;
static constexpr int docsPerFolder = 100;

namespace {

// An index without files: what the documents carry is put into the caches.
class EmptySource : public IndexSource
{
public:
    const IndexCatalog &catalog() const override { return m_catalog; }
    const IndexText *text() const override { return nullptr; }
    int addListener(Listener) override { return 1; }
    void removeListener(int) override {}
    void reimport(const QByteArray &) override {}
    bool waitUntilLoaded(const std::function<bool()> &) const override { return true; }

private:
    IndexCatalog m_catalog;
};

XPAttributeValuePtr tags(const QStringList &names)
{
    return names.isEmpty() ? XPAttributeValuePtr()
                           : KPDocMetaData::makeTagNames(PropertyValue(names));
}

// The caches start one after the other, the last of them some seconds after the first.
void waitForCaches(KPPooledString probe)
{
    const XPAttributeValuePtr value = tags({QStringLiteral("probe")});
    for (const auto attribute :
         {KPDocMetaData::UserTags, KPDocMetaData::Rating, KPDocMetaData::Keywords}) {
        do {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
            KPDocMetaData::setValue(attribute, probe, value);
        } while (!KPDocMetaData::value(attribute, probe));
    }
}

// Kept for the process: records and caches are.
const std::vector<KPDoc *> &documents()
{
    static const std::vector<KPDoc *> all = [] {
        xpGuiThread.assertHere();
        static auto *const source = new EmptySource;
        KPDoc::startMetaDataSearching(*source);
        waitForCaches(KPPool::pooledString(u"/probe"));
        std::vector<KPDoc *> docs;
        for (int i = 0; i < docCount; ++i) {
            const KPPooledString path = KPPool::pooledString(QString(
                QStringLiteral("/home/ann/Documents/Filed/%1/report %2 of the tax office.%3")
                    .arg(i / docsPerFolder, 4, 10, QLatin1Char('0'))
                    .arg(i)
                    .arg(QLatin1String(i % 4 == 0 ? "jpg" : "pdf"))));
            XPFileInfo info;
            info.mode = S_IFREG | 0644;
            info.size = i;
            info.modified = 1'600'000'000'000'000'000 + i;
            QStringList names;
            for (int n = 0; n < i % 4; ++n)
                names.append(QStringLiteral("tag %1").arg((i * 7 + n * 11) % 300));
            KPDocMetaData::setValue(KPDocMetaData::UserTags, path, tags(names));
            KPDocMetaData::setValue(KPDocMetaData::Keywords, path,
                                    i % 10 == 0 ? tags({QStringLiteral("key")})
                                                : XPAttributeValuePtr());
            docs.push_back(KPDocCache::docAtPath(path, &info));
            benchmark::DoNotOptimize(docs.back()->utiTagName());
        }
        return docs;
    }();
    return all;
}

KPSearchState::Ptr busyState()
{
    const auto types = [](const char *identifier) {
        return KPTagName::arrayOfUTIsToKPTagNames({QLatin1String(identifier)});
    };
    const auto folder = [](int number) {
        return QStringLiteral("/home/ann/Documents/Filed/%1").arg(number, 4, 10, QLatin1Char('0'));
    };
    return KPSearchState::searchStateWithNativeDictionary({})
        ->searchStateWithNewTags({QStringLiteral("tag 1"), QStringLiteral("tag 12")})
        ->searchStateWithNewExcludeTags({QStringLiteral("tag 299")})
        ->searchStateWithNewExcludeUTIs(types("public.jpeg"))
        ->searchStateWithNewExcludeFolders({folder(3), folder(500), folder(998)});
}

template <typename Test>
void testAll(benchmark::State &state, Test passes)
{
    const std::vector<KPDoc *> &docs = documents();
    qsizetype passed = 0;
    for ([[maybe_unused]] auto _ : state) {
        for (const KPDoc *doc : docs)
            passed += passes(*doc) ? 1 : 0;
    }
    benchmark::DoNotOptimize(passed);
    state.SetItemsProcessed(state.iterations() * docCount);
}

} // namespace

static void docPassesMDQuery(benchmark::State &state)
{
    const auto search = busyState();
    testAll(state, [&](const KPDoc &doc) { return search->docPassesMDQuery(doc); });
    XPBench::itemsPerSecondAtLeast(state, 5e6);
}
BENCHMARK(docPassesMDQuery)->Unit(benchmark::kMillisecond);

// The same records and cache entries, looked at and not judged.
static void lookAtAll(benchmark::State &state)
{
    testAll(state, [](const KPDoc &doc) {
        const KPPooledString path = doc.pooledPath();
        const XPAttributeValuePtr own = KPDocMetaData::value(KPDocMetaData::UserTags, path);
        const XPAttributeValuePtr keywords = KPDocMetaData::value(KPDocMetaData::Keywords, path);
        return doc.utiTagName() != nullptr && (own || keywords);
    });
}
BENCHMARK(lookAtAll)->Name("docPassesMDQueryBareLoop")->Unit(benchmark::kMillisecond);

static void docPassesText(benchmark::State &state)
{
    const auto search =
        KPSearchState::searchStateWithNativeDictionary({})->searchStateWithNewSearchString(
            QStringLiteral("report 9"), false, false, true);
    testAll(state, [&](const KPDoc &doc) { return search->docPasses(doc); });
    XPBench::itemsPerSecondAtLeast(state, 1e6);
}
BENCHMARK(docPassesText)->Unit(benchmark::kMillisecond);

static void docPassesTextAndTags(benchmark::State &state)
{
    const auto search =
        KPSearchState::searchStateWithNativeDictionary({})->searchStateWithNewSearchString(
            QStringLiteral("report 9"), true, true, true);
    testAll(state, [&](const KPDoc &doc) { return search->docPasses(doc); });
}
BENCHMARK(docPassesTextAndTags)->Unit(benchmark::kMillisecond);

// Ten criteria.
static KPSearchState::NativeDictionary manyCriteria()
{
    return busyState()
        ->searchStateWithNewUTIs(
            KPTagName::arrayOfUTIsToKPTagNames({QStringLiteral("tree_public.text")}))
        ->searchStateWithNewSearchString(QStringLiteral("tax report"), true, true, true)
        ->searchStateWithNewDateString(QStringLiteral("KPCrumbTrailLastYear"))
        ->searchStateWithNewRating(QStringLiteral(">= 3"))
        ->searchStateWithNewManagedDocuments(true)
        ->searchStateWithNewContstraintFolders({QStringLiteral("/home/ann")})
        ->nativeDictionary();
}

static void makeQueryText(benchmark::State &state)
{
    const KPSearchState::NativeDictionary dictionary = manyCriteria();
    for ([[maybe_unused]] auto _ : state) {
        const KPSearchState search(dictionary);
        benchmark::DoNotOptimize(search.mdQueryString()->constData());
    }
    XPBench::itemsPerSecondAtLeast(state, 20'000); // 50 microseconds each
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(makeQueryText)->Unit(benchmark::kMicrosecond);

static void askQueryTextAgain(benchmark::State &state)
{
    const KPSearchState search(manyCriteria());
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(search.mdQueryString()->constData());
    XPBench::itemsPerSecondAtLeast(state, 50e6); // 20 nanoseconds each
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(askQueryTextAgain);
