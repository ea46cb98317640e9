#include "XPFilingRun.h"

#include "XPFileFacts.h"
#include "XPFileInfo.h"
#include "XPFileMover.h"
#include "XPFileUtils.h"
#include "XPFiledDocuments.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"
#include "XPVolumeFacts.h"

#include <QCoreApplication>
#include <cerrno>

// A name that somebody else takes between the look and the move is looked for again.
static constexpr int mostRaces = 16;

static bool isTaken(const std::optional<XPError> &error)
{
    return error && error->domain == XPError::posixDomain && error->code == EEXIST;
}

XPFilingRun::XPFilingRun(XPFileRunOptions options, QDateTime now)
    : m_options(std::move(options)), m_now(std::move(now))
{
}

template <typename Work>
void XPFilingRun::forEach(const QStringList &paths, Work work)
{
    qsizetype done = 0;
    for (const QString &path : paths) {
        if (m_options.progress && !m_options.progress(done)) {
            m_report.wasStopped = true;
            return;
        }
        ++done;
        if (!m_taken.contains(path)) {
            m_taken.insert(path);
            work(path);
        }
    }
}

void XPFilingRun::putFiles(const QStringList &paths, bool forceMove)
{
    if (!m_options.dryRun)
        XPNotificationCenter::instance().post(XPFiledDocuments::aboutToMoveNotification);
    forEach(paths, [&](const QString &path) { putFile(path, forceMove); });
}

void XPFilingRun::setToManaged(const QStringList &paths)
{
    forEach(paths, [&](const QString &path) { setToManagedCopyIfNeeded(path); });
}

void XPFilingRun::copyAll(const QStringList &paths)
{
    forEach(paths, [&](const QString &path) { copyOne(path); });
}

void XPFilingRun::fail(const QString &path, const XPError &error)
{
    m_report.steps.append({path, {}, Step::Action::Failed, error, {}});
}

// Chooses the dated folder, and makes it, before the first file that goes there.
void XPFilingRun::prepare()
{
    if (m_names)
        return;
    QString folder;
    if (!m_options.dryRun)
        folder = XPFiledDocuments::currentFiledDocumentsPath(m_now);
    else if (XPFiledDocuments::usesFiledDocuments())
        folder = XPFiledDocuments::filedDocumentsRootIfPresent() + u'/' +
                 XPFiledDocuments::datedFolder(m_now);
    else
        folder = XPFiledDocuments::filedDocumentsRootIfPresent();
    m_names = std::make_unique<XPFreeNames>(folder);
}

void XPFilingRun::mark(const QString &path, Step *step) const
{
    const auto before =
        XPFiledDocuments::storedMark(m_options.dryRun ? step->from : path).valueOr({});
    if (!m_options.dryRun)
        step->problem = XPFiledDocuments::setManaged(true, path);
    if (!step->problem && before != true)
        step->mark = {before, true};
}

XPFileStep XPFilingRun::markInPlace(const QString &path, Marks marks) const
{
    const bool managed = marks != Marks::Unmanaged;
    Step step{path, path, Step::Action::Marked, {}};
    const auto info = XPFileInfo::read(path);
    if (!info)
        step.problem = info.error();
    else if (managed && !XPFiledDocuments::pathOKForManaged(path))
        step.problem =
            XPError::make(XPError::Kind::NotPermitted, qtTrId("XPAmongForeignFiles"), path);
    const auto stored = XPFiledDocuments::storedMark(path);
    if (!step.problem && marks == Marks::ManagedIfNoStateFound) {
        if (!stored)
            step.problem = stored.error();
        else if (*stored) // somebody decided already
            return {path, path, Step::Action::Skipped, {}, {}};
    }
    if (!step.problem && !m_options.dryRun)
        step.problem = marks == Marks::ManagedIfNoStateFound
                           ? XPFiledDocuments::setToManagedIfNoStateFound(path)
                           : XPFiledDocuments::setManaged(managed, path);
    if (const auto before = stored.valueOr({}); !step.problem && before != managed)
        step.mark = {before, managed};
    if (step.problem) {
        step.action = Step::Action::Failed;
        step.to.clear();
    }
    return step;
}

void XPFilingRun::setMarks(const QStringList &paths, Marks marks)
{
    forEach(paths, [&](const QString &path) {
        m_report.steps.append(markInPlace(path, marks));
        if (m_report.steps.last().action == Step::Action::Marked)
            m_report.paths.append(path);
    });
}

void XPFilingRun::putFile(const QString &path, bool forceMove)
{
    const auto info = XPFileInfo::read(path);
    if (!info) {
        fail(path, info.error());
        return;
    }
    if (!XPFileUtils::isFileOrPackage(path)) {
        m_report.steps.append({path, path, Step::Action::Skipped, {}, {}});
        return;
    }
    Step step{path, path, Step::Action::Marked, {}, {}};
    if (XPFiledDocuments::pathIsAlreadyInGoodPlaceInFiledDocuments(path)) {
        mark(path, &step);
        m_report.steps.append(step);
        return;
    }
    if (const auto error = bring(path, forceMove, &step)) {
        fail(path, *error);
        return;
    }
    mark(step.to, &step);
    m_report.paths.append(step.to);
    m_report.steps.append(step);
}

std::optional<XPError> XPFilingRun::move(const QString &path, const QString &target,
                                         bool forceMove) const
{
    if (m_options.dryRun)
        return (PathsOnSameVol(path, target) && !XPFileUtils::isGuarded(path)) || forceMove
                   ? std::nullopt
                   : std::optional(XPError::fromErrno(EXDEV, path));
    return forceMove
               ? XPFileMover::move(path, target)
               : XPFileUtils::moveItemOnSameFileSystemCheckingForSpecialExclusions(path, target);
}

// Moves the file into the dated folder, or copies it there.
std::optional<XPError> XPFilingRun::bring(const QString &path, bool forceMove, Step *step)
{
    prepare();
    std::optional<XPError> error;
    for (int race = 0; race < mostRaces; ++race) {
        step->to = m_names->take(XPPath::fileName(path));
        error = move(path, step->to, forceMove);
        if (!isTaken(error))
            break;
    }
    if (!error) {
        step->action = Step::Action::Moved;
        if (!m_options.dryRun)
            XPFiledDocuments::tellMoved(path, step->to);
        return {};
    }
    // A copy besides a file that should have gone would be made again and again.
    return forceMove ? error : copyToFreeName(path, step);
}

std::optional<XPError> XPFilingRun::copyToFreeName(const QString &path, Step *step)
{
    prepare();
    std::optional<XPError> error;
    for (int race = 0; race < mostRaces; ++race) {
        if (race > 0 || step->to.isEmpty() || step->to == path)
            step->to = m_names->take(XPPath::fileName(path));
        error = m_options.dryRun ? std::nullopt : XPFileMover::copy(path, step->to);
        if (!isTaken(error))
            break;
    }
    step->action = Step::Action::Copied;
    return error;
}

void XPFilingRun::setToManagedCopyIfNeeded(const QString &path)
{
    const auto info = XPFileInfo::read(path);
    if (!info) {
        fail(path, info.error());
        return;
    }
    if (XPFiledDocuments::pathOKForManaged(path)) {
        Step step{path, path, Step::Action::Marked, {}};
        mark(path, &step);
        if (!step.problem || XPFiledDocuments::pathIsInFiledDocuments(path)) {
            m_report.paths.append(path);
            m_report.steps.append(step);
            return;
        }
    }
    copyOne(path);
}

void XPFilingRun::copyOne(const QString &path)
{
    const auto info = XPFileInfo::read(path);
    if (path.isEmpty() || !info) {
        fail(path, info ? XPError::fromErrno(ENOENT) : info.error());
        return;
    }
    if (XPFiledDocuments::pathIsInFiledDocuments(path)) {
        // Answered under its old name, wherever it was filed.
        const qsizetype others = m_report.paths.size();
        if (!m_options.dryRun)
            XPNotificationCenter::instance().post(XPFiledDocuments::aboutToMoveNotification);
        putFile(path, false);
        m_report.paths.resize(others);
        m_report.paths.append(path);
        return;
    }
    if (!m_options.dryRun)
        XPNotificationCenter::instance().post(XPFiledDocuments::aboutToMoveNotification);
    Step step{path, {}, Step::Action::Copied, {}, {}};
    if (const auto error = copyToFreeName(path, &step)) {
        fail(path, *error);
        return;
    }
    mark(step.to, &step);
    if (!step.problem)
        m_report.paths.append(step.to);
    m_report.steps.append(step);
}
