#include "ImportProcess.h"

#include "XPPath.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <vector>

static constexpr int socketInChild = 3;

// What the library calls of posix_spawn need, freed at the end.
class SpawnSetup
{
public:
    explicit SpawnSetup(int socket)
    {
        ::posix_spawn_file_actions_init(&m_actions);
        ::posix_spawn_file_actions_adddup2(&m_actions, socket, socketInChild);
        ::posix_spawnattr_init(&m_attributes);
        sigset_t none;
        sigset_t all;
        ::sigemptyset(&none);
        ::sigfillset(&all);
        ::posix_spawnattr_setsigmask(&m_attributes, &none);
        ::posix_spawnattr_setsigdefault(&m_attributes, &all);
        ::posix_spawnattr_setpgroup(&m_attributes, 0);
        ::posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                      POSIX_SPAWN_SETPGROUP);
    }
    ~SpawnSetup()
    {
        ::posix_spawnattr_destroy(&m_attributes);
        ::posix_spawn_file_actions_destroy(&m_actions);
    }
    SpawnSetup(const SpawnSetup &) = delete;
    SpawnSetup &operator=(const SpawnSetup &) = delete;

    const posix_spawn_file_actions_t *actions() const { return &m_actions; }
    const posix_spawnattr_t *attributes() const { return &m_attributes; }

private:
    posix_spawn_file_actions_t m_actions = {};
    posix_spawnattr_t m_attributes = {};
};

// The user's own environment may hold secrets; a document could read them out.
static std::vector<QByteArray> environment()
{
    std::vector<QByteArray> words = {"LC_ALL=C.UTF-8", "QT_QPA_PLATFORM=offscreen"};
    for (const char *name : {"TZ", "ASAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"}) {
        const QByteArray value = qgetenv(name);
        if (!value.isEmpty())
            words.push_back(QByteArray(name) + '=' + value);
    }
    return words;
}

XPResult<std::unique_ptr<ImportProcess>> ImportProcess::start(const QByteArray &program, bool idle)
{
    int ends[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return XPError::fromErrno(errno);
    XPFileDescriptor ours(ends[0]);
    const XPFileDescriptor theirs(ends[1]);
    ::fcntl(ours.get(), F_SETFL, O_NONBLOCK);
    std::vector<QByteArray> words = environment();
    std::vector<char *> variables;
    variables.reserve(words.size() + 1);
    for (QByteArray &word : words)
        variables.push_back(word.data());
    variables.push_back(nullptr);
    QByteArray name = program;
    QByteArray option = "--idle";
    char *arguments[] = {name.data(), idle ? option.data() : nullptr, nullptr};
    const SpawnSetup setup(theirs.get());
    pid_t id = 0;
    const int result = ::posix_spawn(&id, program.constData(), setup.actions(), setup.attributes(),
                                     arguments, variables.data());
    if (result != 0)
        return XPError::fromErrno(result, XPPath::decode(program));
    return std::unique_ptr<ImportProcess>(new ImportProcess(id, std::move(ours)));
}

ImportProcess::~ImportProcess()
{
    end();
}

std::chrono::milliseconds ImportProcess::processorTime() const
{
    clockid_t clock = 0;
    timespec used = {};
    if (::clock_getcpuclockid(m_id, &clock) != 0 || ::clock_gettime(clock, &used) != 0)
        return {};
    return std::chrono::milliseconds(qint64{used.tv_sec} * 1000 + used.tv_nsec / 1'000'000);
}

// proc(5): the state is the field after the name, which is in brackets and may hold anything.
bool ImportProcess::isAsleep() const
{
    const QByteArray path = "/proc/" + QByteArray::number(m_id) + "/stat";
    const XPFileDescriptor file(::open(path.constData(), O_RDONLY | O_CLOEXEC));
    char buffer[256] = {};
    const ssize_t size = file.isOpen() ? ::read(file.get(), buffer, sizeof buffer) : -1;
    const QByteArrayView text(buffer, std::max<ssize_t>(size, 0));
    const qsizetype after = text.lastIndexOf(')');
    return after >= 0 && after + 2 < text.size() && text[after + 2] == 'S';
}

void ImportProcess::hold()
{
    ::kill(m_id, SIGSTOP);
}

void ImportProcess::carryOn()
{
    ::kill(m_id, SIGCONT);
}

QString ImportProcess::end()
{
    if (m_id == 0)
        return {};
    m_socket.close();
    ::kill(m_id, SIGKILL);
    int status = 0;
    pid_t ended = 0;
    do
        ended = ::waitpid(m_id, &status, 0);
    while (ended < 0 && errno == EINTR);
    m_id = 0;
    if (ended > 0 && WIFSIGNALED(status))
        return QStringLiteral("killed by signal %1 (%2)")
            .arg(WTERMSIG(status))
            .arg(QLatin1String(::sigdescr_np(WTERMSIG(status))));
    return QStringLiteral("ended with status %1").arg(WEXITSTATUS(status));
}
