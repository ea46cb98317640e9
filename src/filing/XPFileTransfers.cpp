#include "XPFileTransfers.h"

#include "KPDoc.h"
#include "XPFileInfo.h"
#include "XPFileMover.h"
#include "XPFolders.h"
#include "XPFreeNames.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"
#include "XPRecentDestinations.h"
#include "XPTagSidecar.h"
#include "XPText.h"

#include <QSet>
#include <algorithm>
#include <cerrno>

const QString XPFileTransfers::filesMovedNotification = QStringLiteral("XPNotificationFilesMoved");

using Request = XPFileTransfers::Request;
using Step = XPFileStep;

static QString pathIn(const QString &folder, const QString &path)
{
    return (folder == u"/" ? QString() : folder) + u'/' + XPPath::fileName(path);
}

static bool exists(const QString &path)
{
    return XPFileInfo::read(path).hasValue();
}

QStringList XPFileTransfers::removeFilesAlreadyAtDestination(const QStringList &paths,
                                                             const QString &folder)
{
    QStringList others;
    for (const QString &path : paths) {
        if (!exists(pathIn(folder, path)))
            others.append(path);
    }
    return others;
}

bool XPFileTransfers::allFilesExist(const QStringList &paths)
{
    return std::all_of(paths.begin(), paths.end(), exists);
}

QStringList XPFileTransfers::removeDuplicatesInDestination(const QStringList &paths,
                                                           QStringList *skipped)
{
    QStringList others;
    QSet<QString> names;
    for (const QString &path : paths) {
        const QString name = decomposed(XPPath::fileName(path));
        (names.contains(name) ? *skipped : others).append(path);
        names.insert(name);
    }
    return others;
}

namespace {

class Transfer
{
public:
    Transfer(const Request &request, const XPFileRunOptions &options, const QString &folder)
        : m_request(request), m_options(options), m_folder(folder), m_names(folder)
    {
    }

    XPFileReport run()
    {
        if (!beginList())
            return m_report;
        qsizetype done = 0;
        for (const QString &path : m_request.paths) {
            if (m_options.progress && !m_options.progress(done)) {
                m_report.wasStopped = true;
                break;
            }
            ++done;
            const Step step = m_list ? bringListed(path) : bring(path);
            if (!step.to.isEmpty())
                m_report.paths.append(step.to);
            m_report.steps.append(step);
        }
        finishList();
        return m_report;
    }

private:
    // False: there can be none, and nothing is brought there.
    bool beginList()
    {
        if (!m_request.listsTags || m_options.dryRun)
            return true;
        auto list = XPTagSidecar::begin(m_folder);
        if (!list) {
            m_report.steps.append({m_folder, {}, Step::Action::Failed, list.error()});
            return false;
        }
        m_list.emplace(std::move(list).value());
        return true;
    }

    void finishList()
    {
        if (!m_list)
            return;
        const auto path = m_list->finish();
        if (path)
            m_report.tagList = *path;
        else
            m_report.steps.append({m_folder, {}, Step::Action::Failed, path.error()});
    }

    // What stands on the file is read while it is there.
    Step bringListed(const QString &path)
    {
        auto file = XPArchivedFile::read(path, {}, XPArchivedFile::Kind::File);
        if (!file)
            return {path, {}, Step::Action::Failed, file.error()};
        Step step = bring(path);
        if (step.to.isEmpty())
            return step;
        XPArchivedFile listed = *std::move(file);
        listed.path = XPPath::fileName(step.to);
        if (const auto error = m_list->add(listed))
            step.problem = *error;
        return step;
    }

    Step bring(const QString &path)
    {
        Step step{path, {}, Step::Action::Failed, {}};
        const auto source = XPFileInfo::read(path);
        if (!source) {
            step.problem = source.error();
            return step;
        }
        const QString wanted = pathIn(m_folder, path);
        const auto there = XPFileInfo::read(wanted);
        const bool isItself =
            there && there->device == source->device && there->inode == source->inode;
        if (isItself && !m_request.copies) {
            step.to = path;
            step.action = Step::Action::Skipped;
            return step;
        }
        const bool replaces = m_request.replaces && there && !isItself;
        step.problem = replaces ? replace(path, wanted, &step) : bringToFreeName(path, &step);
        if (step.problem) {
            step.to.clear();
            return step;
        }
        step.action = m_request.copies ? Step::Action::Copied : Step::Action::Moved;
        if (!m_request.copies && !m_options.dryRun)
            XPFileTransfers::tellMoved(step.from, step.to);
        return step;
    }

    std::optional<XPError> bringToFreeName(const QString &path, Step *step)
    {
        constexpr int mostRaces = 16; // somebody else takes the name meanwhile
        std::optional<XPError> error;
        for (int race = 0; race < mostRaces; ++race) {
            step->to = m_names.take(XPPath::fileName(path));
            if (m_options.dryRun)
                return {};
            error = m_request.copies ? XPFileMover::copy(path, step->to, moverOptions())
                                     : XPFileMover::move(path, step->to, moverOptions());
            if (!error || error->domain != XPError::posixDomain || error->code != EEXIST)
                break;
        }
        return error;
    }

    std::optional<XPError> replace(const QString &path, const QString &target, Step *step) const
    {
        step->to = target;
        if (m_options.dryRun)
            return {};
        const auto replaced = m_request.copies
                                  ? XPFileMover::copyReplacing(path, target, moverOptions())
                                  : XPFileMover::moveReplacing(path, target, moverOptions());
        if (!replaced)
            return replaced.error();
        step->keptAside = replaced->keptAside;
        step->inTrash = replaced->inTrash;
        return {};
    }

    XPFileMover::Options moverOptions() const
    {
        XPFileMover::Options options;
        if (m_request.mayLoseTags)
            options.attributes = XPFileMover::Attributes::MayBeLost;
        return options;
    }

    const Request &m_request;
    const XPFileRunOptions &m_options;
    const QString m_folder;
    XPFreeNames m_names;
    std::optional<XPTagSidecar> m_list;
    XPFileReport m_report;
};

} // namespace

void XPFileTransfers::tellMoved(const QString &from, const QString &to)
{
    XPNotificationCenter::instance().post(
        KPDoc::pathChangedNotification, {},
        {{QStringLiteral("oldPath"), from}, {QStringLiteral("newPath"), to}});
}

XPFileReport XPFileTransfers::moveCopyFiles(const Request &request, const XPFileRunOptions &options)
{
    const auto folder = XPFolders::realFolder(request.folder);
    if (!folder) {
        XPFileReport report;
        report.steps.append({request.folder, {}, Step::Action::Failed, folder.error(), {}});
        return report;
    }
    XPFileReport report = Transfer(request, options, *folder).run();
    if (!options.dryRun && request.isRemembered && !report.paths.isEmpty())
        XPRecentDestinations::updatePrefsForRecentDestinations(*folder);
    return report;
}
