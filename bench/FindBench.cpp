// A search of 20,000 files in 200 folders, half of them tagged, beside a bare walk that makes the
// same system calls for each file: name, facts, two attributes.
#include "KPFolderWalk.h"
#include "Karvex.h"
#include "MurnBench.h"
#include "XPExtendedAttributes.h"
#include "XPPath.h"

#include <QDir>
#include <QTemporaryDir>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/xattr.h>

static constexpr int folderCount = 200;
static constexpr int filesInFolder = 100;

static const QString &library()
{
    static const QTemporaryDir folder(QDir::currentPath() + QStringLiteral("/find-bench-XXXXXX"));
    static const QString path = [] {
        for (int i = 0; i < folderCount * filesInFolder; ++i) {
            const QString in = folder.path() + QStringLiteral("/folder %1").arg(i % folderCount);
            QDir().mkpath(in);
            const QString file = in + QStringLiteral("/document %1.pdf").arg(i);
            std::ofstream(XPPath::encode(file).toStdString()) << i;
            if (i % 2 == 0 && Karvex::setUserTags(QStringList{QStringLiteral("Invoice")}, file))
                std::abort(); // the figures would be of failures
        }
        return folder.path();
    }();
    return path;
}

static void findTagged(benchmark::State &state)
{
    KPSearchRequest request;
    request.folders = {library()};
    request.tags = {QStringLiteral("invoice")};
    KPFolderWalk::Options once;
    once.live = false;
    for ([[maybe_unused]] auto _ : state) {
        qsizetype found = 0;
        KPFolderWalk walk(
            request, once, -1, [] { return false; },
            [&](const std::vector<KPWalkReport> &reports) {
                for (const KPWalkReport &report : reports)
                    found += report.documents.size();
            });
        walk.run();
        if (found != folderCount * filesInFolder / 2)
            std::abort();
    }
    state.SetItemsProcessed(state.iterations() * folderCount * filesInFolder);
}

static void bareWalk(benchmark::State &state)
{
    const std::string root = XPPath::encode(library()).toStdString();
    const QByteArray tags =
        XPExtendedAttributes::nameOnDisk(Karvex::spotlightKey(Karvex::userTagsKey));
    const QByteArray rating =
        XPExtendedAttributes::nameOnDisk(Karvex::spotlightKey(Karvex::starRatingKey));
    std::array<char, Karvex::maximumValueSize> buffer{};
    for ([[maybe_unused]] auto _ : state) {
        for (const auto &entry : std::filesystem::recursive_directory_iterator(root)) {
            if (entry.is_directory())
                continue;
            const char *path = entry.path().c_str();
            benchmark::DoNotOptimize(XPFileInfo::readAt(AT_FDCWD, path));
            for (const QByteArray *name : {&tags, &rating})
                benchmark::DoNotOptimize(
                    ::lgetxattr(path, name->constData(), buffer.data(), buffer.size()));
        }
    }
    state.SetItemsProcessed(state.iterations() * folderCount * filesInFolder);
}

BENCHMARK(findTagged)->Unit(benchmark::kMillisecond);
BENCHMARK(bareWalk)->Name("findTagged/baseline")->Unit(benchmark::kMillisecond);
