#include "KPIndexSession.h"

#include "CagedImporter.h"
#include "IndexSettings.h"
#include "KPSearchFolders.h"
#include "UserDefaults.h"
#include "XPLog.h"

// The user may have the reading of documents stand still, with the setting "KPImportPaused".
static XPObservation followImportPause(ImportPause &pause)
{
    const auto follow = [&pause](const PropertyValue &value) {
        pause.set(ImportPause::Asked, value.boolValue());
    };
    follow(UserDefaults::standard().value(QStringLiteral("KPImportPaused")));
    return UserDefaults::standard().addObserver(QStringLiteral("values.KPImportPaused"), follow);
}

// The user asked for it before this start. While another process keeps the index it cannot be done,
// and the wish stays.
static void rebuildIfAsked()
{
    const QString key = QStringLiteral("KPRebuildIndex");
    if (!UserDefaults::standard().boolValue(key))
        return;
    if (const auto error = MetadataIndex::remove())
        qCWarning(xpLog).noquote() << "The index is not rebuilt:" << error->message;
    else
        UserDefaults::standard().remove(key);
}

KPIndexSession::KPIndexSession() : m_pause(followImportPause(m_manners.pause()))
{
    rebuildIfAsked();
    CagedImporter::install(IndexSettings::storePath(), &m_manners);
    m_index = MetadataIndex::open();
    m_healer = std::make_unique<KPTagHealer>(*m_index);
    m_mirror = std::make_unique<KPTagMirror>(*m_index);
    m_types = std::make_unique<KPIndexedTypes>(m_index->source());
    m_monitor = std::make_unique<KPIndexMonitor>(*m_index);
    KPSearchFolders &folders = KPSearchFolders::instance();
    folders.setIndex(m_index.get());
    folders.startObserving();
    connect(m_monitor.get(), &KPIndexMonitor::changed, this,
            [this, &folders] { folders.updateIndexAvailability(m_monitor->status().roots); });
}

void KPIndexSession::stopFollowing()
{
    xpGuiThread.assertHere();
    KPSearchFolders::instance().stopObserving();
    KPSearchFolders::instance().setIndex(nullptr);
}

KPIndexSession::~KPIndexSession()
{
    stopFollowing();
}
