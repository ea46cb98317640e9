#include "KPFiledFolders.h"

#include "UserDefaults.h"
#include "XPFileInfo.h"
#include "XPFiledDocuments.h"

// Where the managed folder is not in use, what stands in for it has no folders of dates.
static QString dated(const QString &folder)
{
    const QString root = XPFiledDocuments::filedDocumentsRootIfPresent();
    return XPFiledDocuments::usesFiledDocuments() ? root + u'/' + folder : root;
}

QString KPFiledFolders::day(const QDateTime &date)
{
    return dated(XPFiledDocuments::datedFolder(date));
}

QString KPFiledFolders::month(const QDateTime &date)
{
    return dated(QStringLiteral("%1/%2").arg(date.date().year()).arg(date.date().month()));
}

QStringList KPFiledFolders::past7Days(const QDateTime &date)
{
    if (UserDefaults::standard().boolValue(XPFiledDocuments::useYearMonthKey))
        return {month(date)};
    constexpr int days = 7;
    constexpr qint64 secondsADay = 86400;
    QStringList folders;
    for (int daysBefore = 0; daysBefore < days; ++daysBefore) {
        const QString folder = day(date.addSecs(-daysBefore * secondsADay));
        const auto info = XPFileInfo::read(folder);
        if (info && info->isDirectory() && !folders.contains(folder))
            folders.append(folder);
    }
    return folders;
}
