// murn_bench: the benchmarks, and by hand
//   murn_bench --make-corpus FOLDER FILES [prose]   files to try things on (IndexCorpus.h)
#include "CagedImporter.h"
#include "IndexBenchChild.h"
#include "IndexCorpus.h"
#include "IndexImporters.h"
#include "IndexSettings.h"
#include "PlainTexts.h"
#include "XPPath.h"
#include "XPTranslations.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <cstring>

static int makeCorpus(int count, char **arguments)
{
    const quint32 files =
        count > 1 ? static_cast<quint32>(std::strtoul(arguments[1], nullptr, 10)) : 0;
    if (files == 0) {
        std::fprintf(stderr, "murn_bench --make-corpus FOLDER FILES [prose]\n");
        return 2;
    }
    const bool prose = count > 2 && std::strcmp(arguments[2], "prose") == 0;
    IndexCorpus(files, prose ? IndexCorpus::Bodies::Prose : IndexCorpus::Bodies::None)
        .writeTo(XPPath::absolute(XPPath::decode(QByteArrayView(arguments[0]))));
    return 0;
}

// Settings and caches of nobody's.
static void useFolder(const QString &path)
{
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME",
                             "XDG_RUNTIME_DIR"})
        qputenv(name, QFile::encodeName(path));
}

int main(int count, char **arguments)
{
    if (count > 2 && std::strcmp(arguments[1], "--make-corpus") == 0)
        return makeCorpus(count - 2, arguments + 2);
    // Contents are read as in the program, by importers in their cage, where nothing else is said.
    IndexImporters::install([](bool idle) -> std::unique_ptr<IndexImporter> {
        if (XPBench::PlainTexts::isOn())
            return XPBench::PlainTexts::importer();
        return std::make_unique<CagedImporter>(
            ImportWorker::Setup{.program = MURN_IMPORTER, .idle = idle}, QString());
    });
    // Settings are written at the very end.
    static const QTemporaryDir folder(QDir::currentPath() + QStringLiteral("/settings-XXXXXX"));
    useFolder(folder.path());
    if (const int result = XPBench::runChild(count, arguments); result >= 0)
        return result;
    const QApplication application(count, arguments);
    XPTranslations::install(QLocale(QLocale::English));
    IndexSettings::setRoots({QStringLiteral("/")}); // wherever a corpus lies
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
