#include "Murnctl.h"

#include "XPPath.h"

#include <QDeadlineTimer>
#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

Murnctl::Murnctl(const QByteArrayList &words, const QString &folder)
{
    int outPipe[2];
    int errPipe[2];
    EXPECT_EQ(::pipe2(outPipe, O_CLOEXEC), 0);
    EXPECT_EQ(::pipe2(errPipe, O_CLOEXEC), 0);
    std::vector<char *> arguments;
    const QByteArrayList all = QByteArrayList{MURNCTL} + words;
    for (const QByteArray &word : all)
        arguments.push_back(const_cast<char *>(word.constData()));
    arguments.push_back(nullptr);
    const QByteArray directory = XPPath::encode(folder);
    m_process = ::fork();
    if (m_process == 0) {
        ::dup2(::open("/dev/null", O_RDONLY), 0);
        ::dup2(outPipe[1], 1);
        ::dup2(errPipe[1], 2);
        if (::chdir(directory.constData()) == 0)
            ::execv(MURNCTL, arguments.data());
        ::_exit(127);
    }
    ::close(outPipe[1]);
    ::close(errPipe[1]);
    m_out = outPipe[0];
    m_err = errPipe[0];
}

Murnctl::~Murnctl()
{
    if (m_process > 0)
        ::kill(m_process, SIGKILL);
    wait();
}

void Murnctl::send(int signal)
{
    ::kill(m_process, signal);
}

// A signal that comes before would end it like any other program.
static bool isBlockingInterrupts(pid_t process)
{
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("SigBlk:", 0) == 0)
            return (std::stoull(line.substr(7), nullptr, 16) >> (SIGINT - 1)) & 1;
    }
    return false;
}

void Murnctl::interrupt()
{
    const QDeadlineTimer deadline(30'000);
    while (!isBlockingInterrupts(m_process) && !deadline.hasExpired())
        std::this_thread::yield();
    send(SIGINT);
}

bool Murnctl::readMore()
{
    char buffer[4096];
    const ssize_t size = m_out < 0 ? 0 : ::read(m_out, buffer, sizeof buffer);
    if (size > 0)
        out.append(buffer, size);
    return size > 0;
}

bool Murnctl::waitForLine(const QByteArray &line)
{
    while (!('\n' + out).contains('\n' + line + '\n')) {
        if (!readMore())
            return false;
    }
    return true;
}

void Murnctl::stopReading()
{
    ::close(std::exchange(m_out, -1));
}

int Murnctl::wait()
{
    if (m_process < 0)
        return 127;
    while (readMore()) {
    }
    char buffer[4096];
    for (ssize_t size = 0; (size = ::read(m_err, buffer, sizeof buffer)) > 0;)
        err.append(buffer, size);
    int status = 0;
    ::waitpid(std::exchange(m_process, -1), &status, 0);
    ::close(m_err);
    if (m_out >= 0)
        stopReading();
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

QByteArrayList MurnctlResult::lines() const
{
    QByteArrayList lines = out.split('\n');
    lines.removeLast();
    std::sort(lines.begin(), lines.end());
    return lines;
}

QJsonDocument MurnctlResult::json() const
{
    return QJsonDocument::fromJson(out);
}

MurnctlResult murnctl(const QByteArrayList &words, const QString &folder)
{
    Murnctl run(words, folder);
    const int status = run.wait();
    return {status, run.out, run.err};
}
