#include "KPIndexMonitor.h"

#include "KPIndexCoverage.h"

#include <QLocale>

using Phase = IndexKeeper::Status::Phase;

static constexpr std::chrono::milliseconds interval{250};

KPIndexMonitor::KPIndexMonitor(MetadataIndex &index, QObject *parent)
    : QObject(parent), m_index(index), m_status(readStatus())
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &KPIndexMonitor::look);
    // What is asked for twice before it is done starts the timer once.
    m_listener = m_index.source().addListener([this](const std::vector<IndexItem> &) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (!m_timer.isActive())
                    m_timer.start();
            },
            Qt::QueuedConnection);
    });
    m_timer.start();
}

KPIndexMonitor::~KPIndexMonitor()
{
    m_index.source().removeListener(m_listener);
}

IndexKeeper::Status KPIndexMonitor::readStatus() const
{
    // Never asked of another process here: this is the main thread.
    if (const IndexKeeper *keeper = m_index.keeper())
        return keeper->status();
    IndexKeeper::Status status;
    status.phase = Phase::Live;
    return status;
}

void KPIndexMonitor::look()
{
    m_status = readStatus();
    if (!activity().isEmpty())
        m_timer.start();
    Q_EMIT changed();
}

bool KPIndexMonitor::isSettled() const
{
    return m_status.phase == Phase::Live;
}

QString KPIndexMonitor::activity() const
{
    const QLocale locale;
    switch (m_status.phase) {
    case Phase::Opening:
        return qtTrId("KPIndexOpening");
    case Phase::Crawling:
        return qtTrId("KPIndexReading").arg(locale.toString(m_status.items));
    case Phase::Verifying:
        return qtTrId("KPIndexChecking").arg(locale.toString(m_status.foldersRead));
    case Phase::Live:
        break;
    }
    if (m_status.contentsWaiting == 0)
        return {};
    return qtTrId("KPIndexContents", static_cast<int>(m_status.contentsWaiting))
        .arg(locale.toString(m_status.contentsWaiting));
}

bool KPIndexMonitor::isIndexed(const QString &folder) const
{
    return KPIndexCoverage::of(m_index.source(), folder) == KPIndexCoverage::Kind::Indexed;
}

void KPIndexMonitor::addFolder(const QString &folder)
{
    MetadataIndex::setRoots(MetadataIndex::roots() + QStringList{folder});
    m_index.settingsChanged();
    m_timer.start();
}
