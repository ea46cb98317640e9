// XPFiledDocuments: the inbox, the root, empty folders and the older layout.
#include "XPFileFacts.h"
#include "XPFileInfo.h"
#include "XPFileUtils.h"
#include "XPFiledDocuments.h"
#include "XPFilingRun.h"
#include "XPFolderNames.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <unistd.h>

const QString XPFiledDocuments::addedFromPendingNotification =
    QStringLiteral("DocumentAddedToFiledDocumentsFromPendingDocuments");

// The files and packages directly in a folder, by name. Hidden ones are no documents: another
// program's notes on the folder, or a file that is still being written.
static QStringList documentsIn(const QString &folder, XPFileReport *report)
{
    QStringList paths;
    const int error = XPFolderNames::forEach(
        AT_FDCWD, XPPath::encode(folder).constData(), [&](QByteArrayView name) {
            const QString path = folder + u'/' + XPPath::decode(name);
            if (!XPFileUtils::isInvisible(path) && XPFileUtils::isFileOrPackage(path))
                paths.append(path);
            return true;
        });
    if (error != 0 && error != ENOENT)
        report->steps.append(
            {folder, {}, XPFileStep::Action::Failed, XPError::fromErrno(error, folder), {}});
    std::sort(paths.begin(), paths.end());
    return paths;
}

// Forced moves take each file whole across volumes too, or leave it where it is.
static XPFileReport fileAll(const QString &folder, const XPFileRunOptions &options)
{
    XPFileReport unread;
    const QStringList paths = documentsIn(folder, &unread);
    if (!options.dryRun && paths.isEmpty())
        XPNotificationCenter::instance().post(XPFiledDocuments::aboutToMoveNotification);
    if (paths.isEmpty())
        return unread;
    XPFilingRun run(options);
    run.putFiles(paths, true);
    XPFileReport report = run.takeReport();
    report.steps = unread.steps + report.steps;
    return report;
}

XPFileReport XPFiledDocuments::movePendingFilesToFiledDocuments(const XPFileRunOptions &options)
{
    XPFileReport report = fileAll(pendingDocsFolderIfPresent(), options);
    if (!options.dryRun && !report.paths.isEmpty())
        XPNotificationCenter::instance().post(addedFromPendingNotification);
    return report;
}

XPFileReport XPFiledDocuments::moveDocsAtRootOfFiledDocumentsToToday()
{
    return usesFiledDocuments() ? fileAll(filedDocumentsRoot(), {}) : XPFileReport();
}

void XPFiledDocuments::cleanup()
{
    constexpr int days = 60;
    removeEmptyOldFolders(days);
}

void XPFiledDocuments::removeEmptyOldFolders(int days, const QDateTime &now)
{
    if (!usesFiledDocuments()) // the desktop's folders are not ours
        return;
    constexpr qint64 day = 86400;
    const QString root = filedDocumentsRootIfPresent();
    for (int back = 1; back < days; ++back) {
        const QString folder = root + u'/' + datedFolder(now.addSecs(-back * day));
        if (!IsPackage(folder))
            ::rmdir(XPPath::encode(folder).constData()); // refuses one that holds anything
    }
}

bool XPFiledDocuments::hasYearMonthDayFolders()
{
    static constexpr std::array days = {
        "2013/6/14", "2013/6/13", "2013/6/12",  "2013/3/12",  "2013/2/2",  "2013/3/15", "2013/4/16",
        "2013/5/17", "2013/8/18", "2013/8/21",  "2013/9/30",  "2012/7/17", "2011/9/14", "2012/9/19",
        "2013/9/19", "2013/4/14", "2013/10/15", "2013/10/19", "2012/12/12"};
    const QString root = filedDocumentsRootIfPresent();
    return std::any_of(days.begin(), days.end(), [&root](const char *day) {
        return XPFileInfo::read(root + u'/' + QLatin1String(day)).hasValue();
    });
}

namespace {

// Moves what is in the folders of one month's days to the month's folder.
class MonthConversion
{
public:
    MonthConversion(const QString &folder, const XPFileRunOptions &options, XPFileReport *report)
        : m_folder(folder), m_options(options), m_report(report), m_names(folder)
    {
    }

    // False: stopped.
    bool convertDay(int day)
    {
        const QString folder = m_folder + u'/' + QString::number(day);
        if (!IsDirectory(folder)) // a link leads to what is not ours
            return true;
        for (const QString &path : entriesOf(folder)) {
            if (m_options.progress && !m_options.progress(m_report->steps.size())) {
                m_report->wasStopped = true;
                return false;
            }
            move(path);
        }
        if (!m_options.dryRun)
            ::rmdir(XPPath::encode(folder).constData());
        return true;
    }

private:
    QStringList entriesOf(const QString &folder)
    {
        QStringList paths;
        const int error = XPFolderNames::forEach(
            AT_FDCWD, XPPath::encode(folder).constData(), [&](QByteArrayView name) {
                paths.append(folder + u'/' + XPPath::decode(name));
                return true;
            });
        if (error != 0)
            m_report->steps.append(
                {folder, {}, XPFileStep::Action::Failed, XPError::fromErrno(error, folder), {}});
        std::sort(paths.begin(), paths.end());
        return paths;
    }

    void move(const QString &path)
    {
        const QString target = m_names.take(XPPath::fileName(path));
        const auto error =
            m_options.dryRun ? std::nullopt : XPFileUtils::moveItemOnSameFileSystem(path, target);
        if (error) {
            m_report->steps.append({path, {}, XPFileStep::Action::Failed, error, {}});
            return;
        }
        if (!m_options.dryRun)
            XPFiledDocuments::tellMoved(path, target);
        m_report->paths.append(target);
        m_report->steps.append({path, target, XPFileStep::Action::Moved, {}, {}});
    }

    const QString m_folder;
    const XPFileRunOptions &m_options;
    XPFileReport *m_report;
    XPFreeNames m_names;
};

} // namespace

XPFileReport XPFiledDocuments::convertFromYearMonthDayToYearMonth(const XPFileRunOptions &options,
                                                                  const QDateTime &now)
{
    constexpr int firstYear = 2000;
    constexpr int lastMonth = 12;
    constexpr int lastDay = 32;
    XPFileReport report;
    if (!usesFiledDocuments())
        return report;
    const QString root = filedDocumentsRoot();
    for (int year = firstYear; year <= now.date().year(); ++year) {
        if (!IsDirectory(root + u'/' + QString::number(year)))
            continue;
        for (int month = 0; month <= lastMonth; ++month) {
            const QString folder = root + QStringLiteral("/%1/%2").arg(year).arg(month);
            if (!IsDirectory(folder))
                continue;
            MonthConversion conversion(folder, options, &report);
            for (int day = 0; day <= lastDay; ++day) {
                if (!conversion.convertDay(day))
                    return report;
            }
        }
    }
    return report;
}
