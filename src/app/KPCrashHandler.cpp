#include "KPCrashHandler.h"

#include "KPLogTail.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QGuiApplication>
#include <QSysInfo>
#include <array>
#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <exception>
#include <execinfo.h>
#include <fcntl.h>
#include <unistd.h>

static constexpr std::array<int, 6> crashSignals = {SIGSEGV, SIGBUS,  SIGILL,
                                                    SIGFPE,  SIGABRT, SIGTRAP};
static constexpr int mostFrames = 64;
static constexpr size_t stackSize = 65536; // for the handler: enough for reading the stack

namespace {

// All that the handler reads. Never destroyed.
struct Prepared
{
    QByteArray file;
    QByteArray head;
    std::array<char, stackSize> stack = {};
};

Prepared *prepared = nullptr;
std::atomic_flag isReporting = ATOMIC_FLAG_INIT;

// Only calls that POSIX lists as safe in a signal handler, and own arithmetic.
class Writer
{
public:
    explicit Writer(int descriptor) : m_descriptor(descriptor) {}

    void text(const char *text, size_t length) const
    {
        while (length > 0) {
            const ssize_t done = ::write(m_descriptor, text, length);
            if (done <= 0)
                return;
            text += done;
            length -= static_cast<size_t>(done);
        }
    }
    void text(const char *text) const { this->text(text, std::strlen(text)); }
    void number(size_t value, size_t base) const
    {
        std::array<char, 24> digits = {};
        size_t at = digits.size();
        do {
            digits[--at] = "0123456789abcdef"[value % base];
            value /= base;
        } while (value != 0);
        text(&digits[at], digits.size() - at);
    }

private:
    int m_descriptor;
};

const char *nameOf(int signal)
{
    switch (signal) {
    case SIGSEGV:
        return "SIGSEGV";
    case SIGBUS:
        return "SIGBUS";
    case SIGILL:
        return "SIGILL";
    case SIGFPE:
        return "SIGFPE";
    case SIGABRT:
        return "SIGABRT";
    default:
        return "SIGTRAP";
    }
}

// The library without its folder, and the place in it: what a debugger turns into a line.
void writeFrame(const Writer &out, void *address)
{
    Dl_info info = {};
    if (::dladdr(address, &info) == 0 || info.dli_fname == nullptr) {
        out.text("  ? 0x");
        out.number(reinterpret_cast<size_t>(address), 16);
        out.text("\n");
        return;
    }
    const char *slash = std::strrchr(info.dli_fname, '/');
    out.text("  ");
    out.text(slash == nullptr ? info.dli_fname : slash + 1);
    out.text("+0x");
    out.number(reinterpret_cast<size_t>(address) - reinterpret_cast<size_t>(info.dli_fbase), 16);
    if (info.dli_sname != nullptr) {
        out.text(" ");
        out.text(info.dli_sname);
    }
    out.text("\n");
}

void writeReport(int signal)
{
    const int descriptor = ::open(prepared->file.constData(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor < 0)
        return;
    const Writer out(descriptor);
    out.text(prepared->head.constData());
    out.text("Signal: ");
    out.text(nameOf(signal));
    out.text("\n\nStack:\n");
    std::array<void *, mostFrames> frames = {};
    const int count = ::backtrace(frames.data(), mostFrames);
    for (int number = 0; number < count; ++number)
        writeFrame(out, frames.at(static_cast<size_t>(number)));
    out.text("\nLog (UTC):\n");
    size_t number = 0;
    while (const char *line = KPLogTail::line(number++)) {
        out.text("  ");
        out.text(line);
        out.text("\n");
    }
    ::fsync(descriptor);
    ::close(descriptor);
}

extern "C" void handleCrash(int signal)
{
    if (!isReporting.test_and_set())
        writeReport(signal);
    // The handler is gone already (SA_RESETHAND): the system does what it does with a crash.
    ::raise(signal);
}

[[noreturn]] void endByException()
{
    const char *what = "unknown";
    try {
        if (const auto exception = std::current_exception())
            std::rethrow_exception(exception);
    } catch (const std::exception &exception) {
        what = exception.what();
        qCCritical(xpLog, "an exception was not caught, %s", what);
        std::abort();
    } catch (...) {
        qCCritical(xpLog, "an exception was not caught, %s", what);
    }
    std::abort();
}

} // namespace

QByteArray KPCrashHandler::description()
{
    QStringList lines = {
        QStringLiteral("Murn %1").arg(QCoreApplication::applicationVersion()),
        QStringLiteral("System: %1, %2, %3")
            .arg(QSysInfo::prettyProductName(), QSysInfo::kernelVersion(),
                 QSysInfo::currentCpuArchitecture()),
        QStringLiteral("Qt: %1, %2")
            .arg(QLatin1String(qVersion()),
                 qGuiApp == nullptr ? QStringLiteral("none") : QGuiApplication::platformName()),
        QStringLiteral("Desktop: %1").arg(qEnvironmentVariable("XDG_CURRENT_DESKTOP")),
        QStringLiteral("Started: %1").arg(QDateTime::currentDateTimeUtc().toString(Qt::ISODate)),
    };
    return lines.join(u'\n').toUtf8() + '\n';
}

bool KPCrashHandler::isStarted()
{
    return prepared != nullptr;
}

bool KPCrashHandler::start(const QString &folder)
{
    if (isStarted())
        return true;
    if (const auto error = XPFolders::create(folder)) {
        qCWarning(xpLog).noquote() << error->message;
        return false;
    }
    auto &made = *new Prepared; // for the process
    made.file =
        XPPath::encode(folder) + "/murn-" +
        QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss")).toUtf8() + '-' +
        QByteArray::number(QCoreApplication::applicationPid()) + ".txt";
    made.head = description();
    prepared = &made;
    std::array<void *, 1> frame = {};
    (void)::backtrace(frame.data(), 1); // loads what it needs now, not in the handler
    stack_t stack = {};
    stack.ss_sp = made.stack.data();
    stack.ss_size = made.stack.size();
    ::sigaltstack(&stack, nullptr);
    struct sigaction action = {};
    action.sa_handler = handleCrash;
    action.sa_flags = static_cast<int>(SA_ONSTACK | SA_RESETHAND | SA_NODEFER);
    ::sigemptyset(&action.sa_mask);
    for (const int signal : crashSignals)
        ::sigaction(signal, &action, nullptr);
    return true;
}

void KPCrashHandler::installExceptionHandler()
{
    std::set_terminate(endByException);
}
