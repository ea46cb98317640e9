// murn-scanner: talks to scanners for murn and murnctl, which start it, hand it one request a
// line and read one answer a line, and end it.
#include "ScannerSession.h"

#include <QGuiApplication>
#include <QJsonDocument>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <deque>
#include <iostream>
#include <mutex>
#include <string>
#include <sys/prctl.h>
#include <thread>
#include <unistd.h>

// Drivers print what they like: our answers keep the first of these for themselves.
static int answerDescriptor = -1;

static void answer(const QJsonObject &object)
{
    const QByteArray line = QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
    for (qsizetype written = 0; written < line.size();) {
        const ssize_t count = ::write(answerDescriptor, line.constData() + written,
                                      static_cast<std::size_t>(line.size() - written));
        if (count <= 0)
            std::_Exit(1); // nobody listens any more
        written += count;
    }
}

int main(int argc, char **argv)
{
    if (argc > 1 || ::isatty(STDIN_FILENO)) {
        std::fputs("murn-scanner is started by murn and murnctl. To scan: murnctl scan\n", stderr);
        return 2;
    }
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::signal(SIGPIPE, SIG_IGN);
    answerDescriptor = ::dup(STDOUT_FILENO);
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    qputenv("QT_QPA_PLATFORM", "minimal");
    const QGuiApplication application(argc, argv); // pictures are written with its plugins

    if (sane_init(nullptr, nullptr) != SANE_STATUS_GOOD)
        return 1;
    {
        ScannerSession session(answer);
        std::mutex mutex;
        std::condition_variable changed;
        std::deque<QJsonObject> requests;
        bool isOver = false;
        // Reads on while a scanner is busy, so that a stop is heard.
        std::thread reader([&] {
            for (std::string line; std::getline(std::cin, line);) {
                const QJsonObject request =
                    QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
                if (request.value(QStringLiteral("do")).toString() == u"cancel") {
                    session.cancel();
                    continue;
                }
                const std::scoped_lock lock(mutex);
                requests.push_back(request);
                changed.notify_one();
            }
            session.cancel();
            const std::scoped_lock lock(mutex);
            isOver = true;
            changed.notify_one();
        });
        while (true) {
            std::unique_lock lock(mutex);
            changed.wait(lock, [&] { return isOver || !requests.empty(); });
            if (requests.empty())
                break;
            const QJsonObject request = requests.front();
            requests.pop_front();
            lock.unlock();
            session.perform(request);
        }
        reader.join();
    }
    sane_exit();
    return 0;
}
