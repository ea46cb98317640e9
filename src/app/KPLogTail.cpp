#include "KPLogTail.h"

#include "XPMutex.h"

#include <QString>
#include <cstdio>
#include <ctime>

namespace {

using Line = std::array<char, KPLogTail::lineLength>;

// Never destroyed: threads log until the very end, and a crash may come after it.
struct Tail
{
    XPMutex mutex;
    std::array<Line, KPLogTail::lineCount> lines = {};
    std::atomic<size_t> written = 0; // lines ever
    QtMessageHandler next = nullptr;
};

Tail &tail()
{
    static auto &tail = *new Tail;
    return tail;
}

const char *severity(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "debug";
    case QtInfoMsg:
        return "info";
    case QtWarningMsg:
        return "warning";
    case QtCriticalMsg:
        return "critical";
    case QtFatalMsg:
        break;
    }
    return "fatal";
}

// Without the names of folders, which are those of whoever built the program.
const char *baseName(const char *file)
{
    if (file == nullptr)
        return "?";
    const char *slash = std::strrchr(file, '/');
    return slash == nullptr ? file : slash + 1;
}

// Names stand in quotes, are paths, or follow a colon.
qsizetype wordsBeforeNames(const QString &message)
{
    static const QString beginsName =
        QStringLiteral("/~\\:\"'\u201c\u201d\u201e\u201a\u2018\u00ab\u00bb");
    qsizetype at = 0;
    while (at < message.size() && message[at] >= u' ' && !beginsName.contains(message[at]))
        ++at;
    return at;
}

void take(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    Tail &all = tail();
    {
        const XPLocker locker(all.mutex);
        const size_t number = all.written.load(std::memory_order_relaxed);
        KPLogTail::write(all.lines[number % KPLogTail::lineCount], type, context.file, context.line,
                         message);
        all.written.store(number + 1, std::memory_order_release);
    }
    if (all.next != nullptr)
        all.next(type, context, message);
}

} // namespace

void KPLogTail::write(Line &line, QtMsgType type, const char *file, int fileLine,
                      const QString &message)
{
    const std::time_t now = std::time(nullptr);
    std::tm parts = {};
    gmtime_r(&now, &parts);
    const qsizetype length = wordsBeforeNames(message);
    const QByteArray words = message.left(length).trimmed().toUtf8();
    std::snprintf(line.data(), line.size(), "%02d:%02d:%02d %s %s:%d %s%s", parts.tm_hour,
                  parts.tm_min, parts.tm_sec, severity(type), baseName(file), fileLine,
                  words.constData(), length < message.size() ? " ..." : "");
}

void KPLogTail::install()
{
    tail().next = qInstallMessageHandler(take);
}

const char *KPLogTail::line(size_t number)
{
    const Tail &all = tail();
    const size_t written = all.written.load(std::memory_order_acquire);
    const size_t kept = written < lineCount ? written : lineCount;
    return number < kept ? all.lines[(written - kept + number) % lineCount].data() : nullptr;
}
