#include "KPFiledFolders.h"

#include "UserDefaults.h"
#include "XPFileInfo.h"
#include "XPFolders.h"

static bool hasMonthsOnly()
{
    return UserDefaults::standard().boolValue(QStringLiteral("KPUseYearMonthFiledDocs"));
}

QString KPFiledFolders::root()
{
    const QString chosen =
        UserDefaults::standard().stringValue(QStringLiteral("KPFiledDocumentsPath"));
    return chosen.isEmpty() ? XPFolders::documents() + QStringLiteral("/Filed Documents")
                            : XPFolders::expandTilde(chosen);
}

QString KPFiledFolders::month(const QDateTime &date)
{
    return root() + QStringLiteral("/%1/%2").arg(date.date().year()).arg(date.date().month());
}

QString KPFiledFolders::day(const QDateTime &date)
{
    return hasMonthsOnly() ? month(date) : month(date) + u'/' + QString::number(date.date().day());
}

QStringList KPFiledFolders::past7Days(const QDateTime &date)
{
    if (hasMonthsOnly())
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

void KPFiledFolders::rebuild()
{
}
