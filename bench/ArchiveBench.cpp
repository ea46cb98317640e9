// Ten thousand documents to an archive and back, beside tar and gzip.
#include "Karvex.h"
#include "MurnBench.h"
#include "XPDocumentExport.h"
#include "XPDocumentImport.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

static constexpr int documents = 10'000;

namespace {

// Tagged documents of 1 to 40 kB, half of which can be packed well, as pages of text can.
class Documents
{
public:
    Documents()
    {
        QDir().mkpath(path(QStringLiteral("from")));
        QRandomGenerator random(1);
        for (int i = 0; i < documents; ++i) {
            QByteArray bytes;
            const auto size = static_cast<qsizetype>(random.bounded(1000, 40'000));
            while (bytes.size() < size) {
                bytes += "page " + QByteArray::number(i) + " line ";
                bytes += QByteArray::number(random.generate64(), 36) + '\n';
            }
            const QString name = path(QStringLiteral("from/document %1.txt").arg(i));
            QFile file(name);
            if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
                qFatal("no documents");
            file.close();
            Karvex::setUserTags(QStringList{QStringLiteral("invoice"), QString::number(i % 50)},
                                name);
            m_paths.append(name);
        }
    }
    QString path(const QString &name) const { return m_folder.filePath(name); }
    const QStringList &paths() const { return m_paths; }

    void clear() const
    {
        QDir(path(QStringLiteral("to"))).removeRecursively();
        QFile::remove(path(QStringLiteral("archive")));
        QDir().mkpath(path(QStringLiteral("to")));
    }

private:
    QTemporaryDir m_folder{QDir::currentPath() + QStringLiteral("/archive-XXXXXX")};
    QStringList m_paths;
};

const Documents &theDocuments()
{
    static const Documents documents;
    return documents;
}

} // namespace

static void exportAndImport(benchmark::State &state)
{
    const Documents &made = theDocuments();
    const QString archive = made.path(QStringLiteral("archive"));
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        made.clear();
        state.ResumeTiming();
        if (XPDocumentExport::run(made.paths(), archive, {}).error)
            state.SkipWithError("not written");
        const auto read = XPDocumentImport::run(archive, made.path(QStringLiteral("to")), {});
        if (read.count(XPDocumentImport::Action::Added) != documents)
            state.SkipWithError("not read back");
    }
    XPBench::timeAtMost(state, 1.5);
}
BENCHMARK(exportAndImport)->Unit(benchmark::kMillisecond)->UseRealTime();

// With the attributes, as an archive has them; synced, as ours is.
static void tarAndGzip(benchmark::State &state)
{
    const Documents &made = theDocuments();
    const auto run = [&](const QString &command) {
        QProcess shell;
        shell.setWorkingDirectory(made.path(QString()));
        shell.start(QStringLiteral("sh"), {QStringLiteral("-c"), command});
        if (!shell.waitForFinished(-1) || shell.exitCode() != 0)
            state.SkipWithError("tar failed");
    };
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        made.clear();
        state.ResumeTiming();
        run(QStringLiteral("tar --xattrs -cf - from | gzip > archive && sync archive"));
        run(QStringLiteral("gzip -dc archive | tar --xattrs --xattrs-include='*' -xf - -C to && "
                           "sync -f to"));
    }
}
BENCHMARK(tarAndGzip)
    ->Name("exportAndImport/baseline")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
