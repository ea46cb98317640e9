#include "KPPasteboardFetch.h"

#include "XPFiledDocuments.h"
#include "XPPasteboardSupport.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <chrono>

using namespace std::chrono_literals;

static constexpr auto lookInterval = 100ms;

KPPasteboardFetch::Fetched KPPasteboardFetch::now(const QMimeData *data)
{
    Fetched fetched;
    fetched.pb = XPPasteboard::from(data);
    return fetched;
}

KPPasteboardFetch::KPPasteboardFetch(std::unique_ptr<XPSelectionOffer> offer, const QString &folder,
                                     Done done, QObject *parent)
    : QObject(parent), m_offer(std::move(offer)), m_folder(folder), m_done(std::move(done)),
      m_task(std::make_shared<XPProgressTask>())
{
    m_task->title = qtTrId("KPFetchingTitle");
    m_task->note = qtTrId("XPStopIsSafe");
    m_task->isBeside = true;
    XPProgress::current().begin(m_task);
    connect(this, &KPPasteboardFetch::finished, this, &KPPasteboardFetch::tell,
            Qt::QueuedConnection);
    connect(&m_look, &QTimer::timeout, this, [this] {
        if (!m_task->isStopAsked)
            return;
        m_isStopped = true;
        m_offer->cancel();
    });
    m_look.start(lookInterval);
    m_thread = std::thread([this] { fetch(); });
}

KPPasteboardFetch::~KPPasteboardFetch()
{
    m_isStopped = true;
    m_offer->cancel();
    m_thread.join();
    XPProgress::current().end(m_task);
}

// On its thread.
void KPPasteboardFetch::fetch()
{
    Fetched fetched;
    if (m_offer->offers(XPDataOffer::directSaveFormat)) {
        const QString folder =
            m_folder.isEmpty() ? XPFiledDocuments::currentFiledDocumentsPath() : m_folder;
        auto promised = XPPasteboardSupport::importFilePromise(*m_offer, folder);
        if (!promised)
            fetched.failure = promised.error();
        else if (std::optional<XPFilePromise> promise = *std::move(promised))
            fetched.promise = std::make_shared<XPFilePromise>(*std::move(promise));
    }
    // What was promised and is refused may be offered in another form.
    if (!fetched.promise) {
        fetched.pb = XPPasteboard::from(*m_offer);
        if (!fetched.pb.isEmpty())
            fetched.failure.reset();
        else if (!fetched.failure)
            fetched.failure = fetched.pb.failure();
    }
    m_isSourceFinished = true;
    Q_EMIT sourceFinished(QPrivateSignal());
    if (fetched.promise)
        fetched.failure = fetched.promise->wait([this] { return m_isStopped.load(); });
    {
        const XPLocker lock(m_mutex);
        m_fetched = std::move(fetched);
    }
    Q_EMIT finished(QPrivateSignal());
}

void KPPasteboardFetch::waitForSource()
{
    QEventLoop loop;
    connect(this, &KPPasteboardFetch::sourceFinished, &loop, &QEventLoop::quit,
            Qt::QueuedConnection);
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    if (!m_isSourceFinished)
        loop.exec(QEventLoop::ExcludeUserInputEvents);
}

void KPPasteboardFetch::tell()
{
    Fetched fetched;
    {
        const XPLocker lock(m_mutex);
        fetched = std::move(m_fetched);
    }
    m_done(fetched);
    deleteLater();
}
