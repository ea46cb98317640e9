#include "KPIndexMonitor.h"

#include "KPIndexCoverage.h"
#include "KPIndexRoots.h"
#include "KPIndexTexts.h"

#include <QLocale>
#include <QSocketNotifier>
#include <fcntl.h>

using Phase = IndexStatus::Phase;

static constexpr std::chrono::milliseconds interval{250};
static constexpr int looksAfterMounts = 12;

KPIndexMonitor::KPIndexMonitor(MetadataIndex &index, QObject *parent)
    : QObject(parent), m_index(index)
{
    m_asker.setMaxThreadCount(1);
    m_timer.setSingleShot(true);
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &KPIndexMonitor::look);
    const auto startTimer = [this] {
        if (!m_timer.isActive())
            m_timer.start();
    };
    connect(this, &KPIndexMonitor::itemsChanged, this, startTimer, Qt::QueuedConnection);
    connect(this, &KPIndexMonitor::answered, this, &KPIndexMonitor::takeAnswer,
            Qt::QueuedConnection);
    m_listener = m_index.source().addListener(
        [this](const std::vector<IndexItem> &) { Q_EMIT itemsChanged(QPrivateSignal()); });
    watchMounts();
    m_timer.start();
}

// A volume that goes, or comes back as it was, changes no item.
void KPIndexMonitor::watchMounts()
{
    m_mountTable = XPFileDescriptor(::open("/proc/thread-self/mountinfo", O_RDONLY | O_CLOEXEC));
    if (!m_mountTable.isOpen())
        return;
    // The kernel reports a change of the table as exceptional on the open file (proc(5)).
    m_mounts = std::make_unique<QSocketNotifier>(m_mountTable.get(), QSocketNotifier::Exception);
    connect(m_mounts.get(), &QSocketNotifier::activated, this, [this] {
        m_looksAhead = looksAfterMounts;
        m_timer.start();
    });
}

KPIndexMonitor::~KPIndexMonitor()
{
    m_isEnding = true;
    m_asker.waitForDone();
    m_index.source().removeListener(m_listener);
}

void KPIndexMonitor::look()
{
    if (m_index.isKeptHere())
        take(m_index.status().valueOr({}));
    else if (!std::exchange(m_isAsking, true))
        m_asker.start([this] { ask(); });
}

// On m_asker's thread.
void KPIndexMonitor::ask()
{
    const auto answer = m_index.status([this] { return m_isEnding.load(); });
    {
        const XPLocker locker(m_mutex);
        m_answer = answer.valueOr({});
        if (!answer) {
            m_answer.phase = Phase::Live;
            m_answer.problems = {
                {.kind = IndexProblem::Kind::NotAnswering, .error = answer.error()}};
        }
    }
    Q_EMIT answered(QPrivateSignal());
}

void KPIndexMonitor::takeAnswer()
{
    m_isAsking = false;
    IndexStatus status;
    {
        const XPLocker locker(m_mutex);
        status = std::exchange(m_answer, {});
    }
    take(status);
}

void KPIndexMonitor::take(const IndexStatus &status)
{
    m_status = status;
    m_progress.note(status.contentsWaiting, ImportProgress::Clock::now());
    m_looksAhead = std::max(m_looksAhead - 1, 0);
    if (!activity().isEmpty() || m_looksAhead > 0)
        m_timer.start();
    Q_EMIT changed();
}

QStringList KPIndexMonitor::problems() const
{
    return KPIndexTexts::problems(m_status);
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
    QString waiting = qtTrId("KPIndexContents", static_cast<int>(m_status.contentsWaiting))
                          .arg(locale.toString(m_status.contentsWaiting));
    const auto left = m_progress.left();
    const qint64 minutes = left ? (left->count() + 30) / 60 : 0;
    if (minutes == 0)
        return waiting;
    const double rate = *m_progress.filesPerSecond();
    return waiting + u' ' +
           qtTrId("KPIndexContentsRate", static_cast<int>(std::min<qint64>(minutes, 100'000)))
               .arg(locale.toString(rate, 'f', rate < 10 ? 1 : 0));
}

bool KPIndexMonitor::isIndexed(const QString &folder) const
{
    return KPIndexCoverage::of(m_index.source(), folder) == KPIndexCoverage::Kind::Indexed;
}

void KPIndexMonitor::addFolder(const QString &folder)
{
    KPIndexRoots::add(folder);
    settingsChanged();
}

void KPIndexMonitor::settingsChanged()
{
    m_index.settingsChanged();
    m_timer.start();
}
