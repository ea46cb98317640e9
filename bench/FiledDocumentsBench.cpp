// Filing a thousand files on one file system, beside the bare calls that this needs.
#include "Karvex.h"
#include "MurnBench.h"
#include "UserDefaults.h"
#include "XPFiledDocuments.h"
#include "XPFilingRun.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QDir>
#include <QTemporaryDir>
#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

static constexpr int files = 1000;

namespace {

// A thousand files, and a managed folder beside them.
class Folder
{
public:
    Folder()
    {
        QDir().mkpath(m_folder.filePath(QStringLiteral("Filed")));
        QDir().mkpath(m_folder.filePath(QStringLiteral("in")));
        for (int i = 0; i < files; ++i) {
            const QString path = m_folder.filePath(QStringLiteral("in/document %1.pdf").arg(i));
            ::close(::open(XPPath::encode(path).constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
            m_paths.append(path);
        }
    }
    const QStringList &paths() const { return m_paths; }
    QString filed() const { return m_folder.filePath(QStringLiteral("Filed")); }

private:
    QTemporaryDir m_folder{QDir::currentPath() + QStringLiteral("/filing-XXXXXX")};
    QStringList m_paths;
};

} // namespace

// The pauses between marks are left out on both sides.
static void fileThousandFiles(benchmark::State &state)
{
    XPFiledDocuments::setPacing({});
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        const auto folder = std::make_unique<Folder>();
        XPFiledDocuments::setFiledDocumentsPreferredPath(folder->filed());
        XPFiledDocuments::filedDocumentsRoot();
        state.ResumeTiming();
        XPFilingRun run;
        run.putFiles(folder->paths(), false);
        if (run.report().paths.size() != files || !run.report().problems().isEmpty())
            state.SkipWithError("not all were filed");
        state.PauseTiming();
        UserDefaults::standard().remove(XPFiledDocuments::preferredPathKey);
        XPFiledDocuments::rebuildFiledDocsPath();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * files);
    XPBench::timeAtMost(state, 1.5);
}
BENCHMARK(fileThousandFiles)->Unit(benchmark::kMillisecond);

static void renameAndMark(benchmark::State &state)
{
    const QByteArray mark = *XPPropertyList::writeBinary(PropertyValue::boolean(true));
    const QByteArray name = "user." + Karvex::spotlightKey(Karvex::managedKey).toUtf8();
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        const auto folder = std::make_unique<Folder>();
        state.ResumeTiming();
        for (const QString &path : folder->paths()) {
            const QByteArray to =
                XPPath::encode(folder->filed()) + '/' + XPPath::encode(XPPath::fileName(path));
            ::renameat2(AT_FDCWD, XPPath::encode(path).constData(), AT_FDCWD, to.constData(),
                        RENAME_NOREPLACE);
            ::lsetxattr(to.constData(), name.constData(), mark.constData(),
                        static_cast<size_t>(mark.size()), 0);
        }
    }
    state.SetItemsProcessed(state.iterations() * files);
}
BENCHMARK(renameAndMark)->Name("fileThousandFiles/baseline")->Unit(benchmark::kMillisecond);
