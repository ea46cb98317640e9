// murn-importer: reads foreign documents, shut in (ImporterCage). murn and murnctl start it, hand
// it one open file after the other over a socket, and end it.
//
// It prepares its readers, closes the cage, says so, and answers jobs until its client is gone.
#include "DocumentReaders.h"
#include "ImporterCage.h"
#include "ImporterLoop.h"
#include "TextPage.h"

#include <QGuiApplication>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

static constexpr int socketDescriptor = 3;

// As in <linux/ioprio.h>, which some versions of the kernel's headers write in C only.
static constexpr int ioprioOfProcess = 1;
static constexpr int ioprioIdle = 3 << 13;

// Only what nobody else wants: processor and disk.
static void makeIdle()
{
    const sched_param none = {};
    ::sched_setscheduler(0, SCHED_IDLE, &none);
    ::setpriority(PRIO_PROCESS, 0, 19);
    ::syscall(SYS_ioprio_set, ioprioOfProcess, 0, ioprioIdle);
}

static bool isSocket(int descriptor)
{
    struct stat facts = {};
    return ::fstat(descriptor, &facts) == 0 && S_ISSOCK(facts.st_mode);
}

static ImportHello hello(const ImporterCage::State &state)
{
    ImportHello hello = {state.landlock, state.seccomp, {}};
    for (const DocumentReaderRow &row : documentReaders())
        hello.types.append(row.type.toString());
    return hello;
}

int main(int argc, char **argv)
{
    const bool isIdle = argc == 2 && std::strcmp(argv[1], "--idle") == 0;
    if ((argc > 1 && !isIdle) || !isSocket(socketDescriptor)) {
        std::fputs("murn-importer is started by murn and murnctl. To see what it makes of a file: "
                   "murnctl import FILE\n",
                   stderr);
        return 2;
    }
    ::prctl(PR_SET_PDEATHSIG, SIGKILL); // an idle process might take long to see that it is alone
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    if (isIdle)
        makeIdle();
    // Fonts need Qt's platform; this one has no screen and starts no thread. It would make itself
    // a folder for sockets, which it has no use for here, and talk about it.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_RUNTIME_DIR", "/proc/none");
    qputenv("TMPDIR", "/proc/none");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QGuiApplication application(argc, argv);
    TextPage::prepare();
    std::vector<QByteArray> folders;
    for (const DocumentReaderRow &row : documentReaders()) {
        row.reader().prepare();
        const auto more = row.reader().readOnlyFolders();
        folders.insert(folders.end(), more.begin(), more.end());
    }
    const auto state = ImporterCage::close(folders, socketDescriptor + 1);
    if (!state)
        return 1;
    ImporterLoop loop(socketDescriptor);
    loop.run(hello(*state));
    ::_exit(0); // what libraries do at the end may want what is refused here
}
