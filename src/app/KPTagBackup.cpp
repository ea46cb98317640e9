#include "KPTagBackup.h"

#include "KPEditSummary.h"
#include "KarvexBackupFile.h"
#include "KarvexSync.h"
#include "UserDefaults.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QGuiApplication>
#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

static constexpr std::chrono::seconds afterLaunch = 600s;
static constexpr std::chrono::seconds interval = 3600s;

static bool isApplicationActive()
{
    return QGuiApplication::applicationState() == Qt::ApplicationActive;
}

KPTagBackup::KPTagBackup(IndexSource &source, Activity isActive)
    : m_source(source), m_isActive(isActive ? std::move(isActive) : isApplicationActive)
{
    m_observation = XPNotificationCenter::instance().addObserver(
        KarvexSync::doneNotification,
        [this](const XPNotification &notification) { syncDone(notification.userInfo); });
    connect(&m_hourly, &QTimer::timeout, this, &KPTagBackup::doTagSyncTimer);
    m_hourly.start(interval);
    QTimer::singleShot(afterLaunch, this, &KPTagBackup::doTagSync);
}

KPTagBackup::~KPTagBackup()
{
    KarvexSync::stop();
}

QStringList KPTagBackup::locations()
{
    QStringList files;
    const QString synchronised = XPFolders::home() + QStringLiteral("/Dropbox");
    if (const auto info = XPFileInfo::read(synchronised); info && info->isDirectory())
        files.append(synchronised + QStringLiteral("/.tags_and_ratings.plist"));
    files.append(KarvexBackupFile::defaultPath());
    return files;
}

void KPTagBackup::doTagSyncTimer()
{
    if (m_isActive())
        doTagSync();
}

void KPTagBackup::doTagSync()
{
    if (UserDefaults::standard().boolValue(QStringLiteral("KPSyncTagsForBackup")))
        backUpNow();
}

void KPTagBackup::backUpNow()
{
    if (!KarvexSync::syncWithFiles(m_source, locations(), false))
        return;
    ++m_running;
    m_activity = qtTrId("KPTagBackupRunning");
    Q_EMIT changed();
}

void KPTagBackup::syncDone(const PropertyValue::Dictionary &result)
{
    m_running = std::max(m_running - 1, 0);
    if (m_running == 0)
        m_activity.clear();
    m_problem.clear();
    if (result.value(QStringLiteral("worked")).boolValue()) {
        UserDefaults::standard().setValue(
            QStringLiteral("KPLastBackup"),
            PropertyValue::real(PropertyValue::Date::now().secondsSince1970()));
    } else {
        XPError error;
        error.kind = static_cast<XPError::Kind>(result.value(KarvexSync::kindKey).integerValue());
        error.message = result.value(QStringLiteral("status")).string();
        m_problem = qtTrId("KPTagBackupFailed").arg(KPEditSummary::reason(error));
    }
    Q_EMIT changed();
}
