#include "KPContentsReader.h"

#include "ImportDocument.h"
#include "ImportWorker.h"
#include "KPContentTypes.h"
#include "KPFileType.h"
#include "KarvexRepair.h"
#include "XPExtendedAttributes.h"
#include "XPFileInfo.h"
#include "XPPath.h"
#include "XPPrograms.h"
#include "XPPropertyList.h"
#include "XPVolumes.h"

#include <algorithm>

using namespace std::chrono_literals;

static constexpr auto restAfter = 30s; // an importer without work ends

// The thread's own: an importer that it keeps for the next document.
class KPContentsReader::Reading
{
public:
    explicit Reading(const QByteArray &importer) : m_importer(importer) {}

    bool isWarm() const { return m_worker.has_value(); }
    void rest() { m_worker.reset(); }
    Contents read(const Job &job, const std::stop_token &stop);

private:
    void readDocument(Contents &contents, const std::stop_token &stop);
    static void readAttributes(Contents &contents);

    const QByteArray m_importer;
    std::optional<ImportWorker> m_worker;
};

void KPContentsReader::Reading::readDocument(Contents &contents, const std::stop_token &stop)
{
    contents.isRead = true;
    DocumentAnswer &answer = contents.answer;
    answer.failure = DocumentFailure::Unreadable;
    if (!m_worker)
        m_worker.emplace(ImportWorker::Setup{.program = m_importer, .idle = false});
    const auto document = ImportDocument::open(XPPath::encode(contents.path), contents.uti);
    const auto hello = m_worker->hello(stop);
    if (!document || !hello)
        return;
    if (!hello->reads(KPContentTypes::typeTree(contents.uti))) {
        answer.failure = DocumentFailure::Unsupported;
        return;
    }
    const auto outcome = m_worker->run(document->job(), document->descriptor.get(), stop);
    if (const auto *frame = std::get_if<ImportFrame>(&outcome)) {
        auto read = documentAnswerFrom(*frame);
        answer.failure = DocumentFailure::Crashed;
        if (read)
            answer = *std::move(read);
    } else if (const auto *end = std::get_if<ImportWorker::Break>(&outcome)) {
        answer.failure = end->failure;
    }
}

void KPContentsReader::Reading::readAttributes(Contents &contents)
{
    const auto names = XPExtendedAttributes::list(contents.path);
    for (const QString &name : names.valueOr({})) {
        const auto bytes = XPExtendedAttributes::read(contents.path, name);
        if (bytes && *bytes)
            contents.attributes.append({name, **bytes, XPPropertyList::read(**bytes).valueOr({})});
    }
    for (const auto &bytes : KarvexRepair::unreadable(contents.path).valueOr({}))
        contents.unreadable.append(bytes.name);
    for (const KPHealing &healing : KPHealingLog::read().valueOr({})) {
        if (healing.path == contents.path && healing.state != KPHealing::State::Undone)
            contents.healings.prepend(healing);
    }
}

KPContentsReader::Contents KPContentsReader::Reading::read(const Job &job,
                                                           const std::stop_token &stop)
{
    Contents contents;
    contents.path = job.path;
    if (XPVolumes::isOnSlowVolume(job.path))
        return contents;
    const auto info = XPFileInfo::read(job.path);
    if (!info) {
        contents.error = info.error();
        return contents;
    }
    contents.uti = KPFileType::utiForPath(job.path, XPPath::extension(job.path), info->mode);
    readAttributes(contents);
    if (job.reads && info->isRegular())
        readDocument(contents, stop);
    return contents;
}

KPContentsReader::KPContentsReader(QByteArray importer, QObject *parent)
    : QObject(parent), m_importer(std::move(importer))
{
    connect(this, &KPContentsReader::newsWaiting, this, &KPContentsReader::receive,
            Qt::QueuedConnection);
    m_thread = std::thread([this] { loop(); });
}

KPContentsReader::~KPContentsReader()
{
    {
        const XPLocker locker(m_mutex);
        m_quit = true;
        m_stop.request_stop();
    }
    m_wake.notify_one();
    m_thread.join();
}

QByteArray KPContentsReader::usualImporter()
{
    return XPPrograms::helper("murn-importer");
}

void KPContentsReader::want(const QString &path, bool reads)
{
    post({path, reads, {}, false});
}

void KPContentsReader::heal(const KPHealing &healing, bool accepts)
{
    post({healing.path, false, healing, accepts});
}

void KPContentsReader::post(Job job)
{
    {
        const XPLocker locker(m_mutex);
        // What the user decided is not dropped by the next look at another document.
        if (m_job && m_job->healing && !job.healing) {
            job.healing = m_job->healing;
            job.accepts = m_job->accepts;
        }
        m_contents.reset();
        m_stop.request_stop();
        m_job = std::move(job);
    }
    m_wake.notify_one();
}

// The log says what was done, whether or not all of it could be.
static std::optional<XPError> decide(KPHealing healing, bool accepts)
{
    std::optional<XPError> error;
    if (accepts)
        error = healing.heal();
    else if (healing.state == KPHealing::State::Healed)
        error = healing.undo();
    if (error && (accepts || error->domain == XPError::posixDomain))
        return error;
    healing.state = accepts ? KPHealing::State::Healed : KPHealing::State::Undone;
    const auto logged = KPHealingLog::change([&](QList<KPHealing> &cases) {
        for (KPHealing &each : cases) {
            if (each.number == healing.number)
                each = healing;
        }
    });
    return error ? error : logged;
}

void KPContentsReader::loop()
{
    Reading reading(m_importer);
    XPLocker locker(m_mutex);
    for (;;) {
        while (!m_quit && !m_job) {
            if (!reading.isWarm()) {
                m_wake.wait(locker);
            } else if (m_wake.wait_for(locker, restAfter) == std::cv_status::timeout && !m_job) {
                locker.unlock();
                reading.rest();
                locker.lock();
            }
        }
        if (m_quit && !(m_job && m_job->healing))
            return;
        const Job job = *std::exchange(m_job, std::nullopt);
        m_stop = std::stop_source();
        const std::stop_token stop = m_stop.get_token();
        locker.unlock();
        std::optional<XPError> error;
        if (job.healing)
            error = decide(*job.healing, job.accepts);
        ContentsPtr contents;
        if (!job.path.isEmpty())
            contents = std::make_shared<const Contents>(reading.read(job, stop));
        locker.lock();
        if (!stop.stop_requested())
            m_contents = contents;
        if (error)
            m_error = error;
        if (m_contents || m_error)
            Q_EMIT newsWaiting(QPrivateSignal());
    }
}

void KPContentsReader::receive()
{
    ContentsPtr contents;
    std::optional<XPError> error;
    {
        const XPLocker locker(m_mutex);
        contents = std::exchange(m_contents, {});
        error = std::exchange(m_error, std::nullopt);
    }
    if (error)
        Q_EMIT failed(*error);
    if (contents)
        Q_EMIT ready(contents);
}
