#include "ImportWorker.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>

using namespace std::chrono_literals;
using std::chrono::milliseconds;

// What leaks in a library, or what a document left behind, lives no longer than so many.
static constexpr int jobsOfOneProcess = 1000;
// Loading libraries from a cold disk, at idle priority on a busy machine.
static constexpr milliseconds startLimit = 20s;
// By the clock, in multiples of the limit of processor time.
static constexpr int patience = 12;
// A sleeper is looked at twice so far apart: it may only just wait for another of its threads.
static constexpr milliseconds secondLook = 250ms;

ImportWorker::ImportWorker(Setup setup)
    : m_setup(std::move(setup)), m_pause(m_setup.manners ? m_setup.manners->pause() : m_noPause),
      m_bell(m_pause)
{
}

ImportWorker::~ImportWorker() = default;

milliseconds ImportWorker::limitFor(milliseconds limit, qint64 size)
{
    const milliseconds more = std::chrono::seconds(size / (8 << 20));
    return std::clamp(limit + more, limit, std::max<milliseconds>(limit, 30s));
}

// --- Time

// How long a job has taken: pauses do not count.
class ImportWorker::Watch
{
public:
    Watch(const ImportWorker &worker, milliseconds limit)
        : m_worker(worker), m_limit(limit), m_before(worker.m_process->processorTime()),
          m_since(Clock::now())
    {
    }
    ~Watch() { hold(false); }
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;

    void hold(bool on)
    {
        if (on == m_isHeld || !m_worker.m_process)
            return;
        m_isHeld = on;
        const Clock::time_point now = Clock::now();
        if (on) {
            m_worker.m_process->hold();
            m_clock += now - m_since;
        } else {
            m_worker.m_process->carryOn();
            m_since = now;
        }
        m_asleepAt = neverAsleep;
    }

    // When to look again; nothing: its time is over.
    std::optional<milliseconds> left()
    {
        if (m_isHeld)
            return milliseconds(-1);
        const milliseconds used = m_worker.m_process->processorTime() - m_before;
        const auto clock = std::chrono::ceil<milliseconds>(m_clock + (Clock::now() - m_since));
        if (used >= m_limit || clock >= m_limit * patience)
            return {};
        if (clock < m_limit)
            return m_limit - clock;
        if (!m_worker.m_process->isAsleep()) {
            m_asleepAt = neverAsleep;
            return std::max(m_limit - used, secondLook);
        }
        if (m_asleepAt == used)
            return {};
        m_asleepAt = used;
        return secondLook;
    }

private:
    static constexpr milliseconds neverAsleep{-1};

    const ImportWorker &m_worker;
    const milliseconds m_limit;
    const milliseconds m_before;
    Clock::duration m_clock{};
    Clock::time_point m_since;
    // Processor time when it was seen to sleep. No optional: GCC 12 takes its comparison for a use
    // of what is not initialised.
    milliseconds m_asleepAt = neverAsleep;
    bool m_isHeld = false;
};

// --- The socket

// A worker that speaks before it is asked would answer for the next document.
bool ImportWorker::hasUnaskedBytes() const
{
    char byte = 0;
    return ::recv(m_process->socket(), &byte, 1, MSG_PEEK | MSG_DONTWAIT) != -1 || errno != EAGAIN;
}

// A job is far smaller than a socket's buffer, which is empty: all of it goes at once.
bool ImportWorker::send(const ImportFrame &frame, int document) const
{
    QByteArray bytes = frame.bytesBeforeBody();
    iovec part = {bytes.data(), static_cast<size_t>(bytes.size())};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof document)] = {};
    msghdr message = {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    cmsghdr *rights = CMSG_FIRSTHDR(&message);
    rights->cmsg_level = SOL_SOCKET;
    rights->cmsg_type = SCM_RIGHTS;
    rights->cmsg_len = CMSG_LEN(sizeof document);
    std::memcpy(CMSG_DATA(rights), &document, sizeof document);
    ssize_t sent = 0;
    do
        sent = ::sendmsg(m_process->socket(), &message, MSG_NOSIGNAL);
    while (sent < 0 && errno == EINTR);
    return sent == bytes.size();
}

// What has come: a whole frame, nothing yet, or the end.
std::variant<std::monostate, ImportFrame, ImportWorker::Break> ImportWorker::receive()
{
    for (;;) {
        const auto space = m_reader.space();
        const ssize_t got =
            ::recv(m_process->socket(), space.at, static_cast<size_t>(space.size), 0);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0 && errno == EAGAIN)
            return std::monostate();
        if (got <= 0)
            return broken(DocumentFailure::Crashed);
        if (const auto error = m_reader.filled(got))
            return broken(DocumentFailure::Crashed, error->message);
        if (auto frame = m_reader.take())
            return std::move(*frame);
    }
}

ImportWorker::Break ImportWorker::broken(DocumentFailure failure, const QString &reason)
{
    const QString end = m_process->end();
    m_process.reset();
    return {failure, reason.isEmpty() ? end : reason};
}

// --- Jobs

// As poll() takes it; below 0 is for ever. Manners have to be looked after now and then.
int ImportWorker::timeout(milliseconds left) const
{
    if (m_setup.manners && (left < 0ms || left > ImportManners::interval))
        left = ImportManners::interval;
    return static_cast<int>(left.count());
}

// Until a frame is there, the time over or `stop` said.
ImportWorker::Outcome ImportWorker::wait(milliseconds limit, bool mayPause,
                                         const std::stop_token &stop)
{
    const std::stop_callback ring(stop, [this] { m_bell.ring(); });
    Watch watch(*this, limit);
    for (;;) {
        m_bell.quieten();
        if (stop.stop_requested()) {
            m_process.reset();
            return XPError::make(XPError::Kind::Cancelled, QStringLiteral("stopped"));
        }
        if (m_setup.manners)
            m_setup.manners->look();
        watch.hold(mayPause && m_pause.reasons() != 0);
        const auto left = watch.left();
        if (!left)
            return broken(DocumentFailure::TimedOut, QStringLiteral("took too long"));
        pollfd events[] = {{m_process->socket(), POLLIN, 0}, {m_bell.descriptor(), POLLIN, 0}};
        ::poll(events, std::size(events), timeout(*left));
        auto received = receive();
        if (auto *frame = std::get_if<ImportFrame>(&received))
            return std::move(*frame);
        if (auto *end = std::get_if<Break>(&received))
            return std::move(*end);
    }
}

std::optional<XPError> ImportWorker::startProcess(const std::stop_token &stop)
{
    if (m_process && (m_jobs >= jobsOfOneProcess || hasUnaskedBytes()))
        m_process.reset();
    if (m_process)
        return {};
    if (m_setup.program.isEmpty())
        return XPError::make(XPError::Kind::NotFound,
                             QStringLiteral("the program murn-importer is missing"));
    auto process = ImportProcess::start(m_setup.program, m_setup.idle);
    if (!process)
        return process.error();
    m_process = std::move(process).value();
    m_reader = {};
    m_jobs = 0;
    Outcome outcome = wait(startLimit, false, stop);
    if (const auto *error = std::get_if<XPError>(&outcome))
        return *error;
    const auto *frame = std::get_if<ImportFrame>(&outcome);
    const auto hello =
        frame ? ImportHello::from(*frame)
              : XPError::make(XPError::Kind::Io, QStringLiteral("murn-importer does not start: ") +
                                                     std::get<Break>(outcome).reason);
    if (!hello) {
        m_process.reset();
        return hello.error();
    }
    m_hello = *hello;
    return {};
}

XPResult<ImportHello> ImportWorker::hello(const std::stop_token &stop)
{
    if (const auto error = startProcess(stop))
        return *error;
    return m_hello;
}

ImportWorker::Outcome ImportWorker::run(ImportJob job, int document, const std::stop_token &stop)
{
    if (const auto error = startProcess(stop))
        return *error;
    const milliseconds limit = limitFor(m_setup.limit, job.size);
    job.milliseconds = static_cast<int>(limit.count() * 3 / 4);
    ++m_jobs;
    if (!send(job.frame(), document))
        return broken(DocumentFailure::Crashed);
    return wait(limit, true, stop);
}
