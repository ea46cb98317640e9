#include "IndexBenchChild.h"
#include "IndexCatalog.h"

#include "IndexBenchKeeper.h"
#include "KPFileType.h"
#include "Karvex.h"
#include "PlainTexts.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <map>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace XPBench {

using namespace std::chrono_literals;

qint64 monotonicNow()
{
    return std::chrono::steady_clock::now().time_since_epoch().count();
}

[[noreturn]] static void fail(const QByteArray &what)
{
    std::fprintf(stderr, "murn_bench: %s: error %d\n", what.constData(), errno);
    std::abort();
}

// --- The process that changes files

static void write(const QByteArray &path, const QByteArray &text)
{
    const int file = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (file < 0 || ::write(file, text.constData(), static_cast<size_t>(text.size())) < 0)
        fail(path);
    ::close(file);
}

static void rate(const QByteArray &path, int rating)
{
    // The attribute alone, as any program would set it: one change, one event.
    const PropertyValue value = rating > 0 ? PropertyValue::real(rating) : PropertyValue();
    if (Karvex::setXAttrMetaData(value, Karvex::starRatingKey, XPPath::decode(path)))
        fail(path);
}

static void change(const QList<QByteArray> &words)
{
    const QByteArray &what = words[0];
    const QByteArray &path = words[1];
    const QByteArray argument = words.value(2);
    if (what == "rate") {
        rate(path, argument.toInt());
    } else if (what == "write") {
        write(path, argument + '\n');
    } else if (what == "rename") {
        if (::rename(path.constData(), argument.constData()) != 0)
            fail(path);
    } else if (what == "delete") {
        if (::unlink(path.constData()) != 0)
            fail(path);
    } else if (what == "touch") {
        for (int i = 0; i < argument.toInt(); ++i)
            rate(path + "/burst-" + QByteArray::number(i) + ".txt", 5);
    } else {
        fail(what);
    }
}

static int mutate()
{
    std::string line;
    while (std::getline(std::cin, line)) {
        const QList<QByteArray> words = QByteArray::fromStdString(line).split(' ');
        const qint64 begun = monotonicNow();
        change(words);
        std::cout << begun << ' ' << monotonicNow() << std::endl;
    }
    return 0;
}

Mutator::Mutator()
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--index-mutate")});
    if (!m_process.waitForStarted())
        fail("another process");
}

Mutator::~Mutator()
{
    m_process.closeWriteChannel();
    m_process.waitForFinished();
}

void Mutator::begin(const QByteArray &change)
{
    m_process.write(change + '\n');
    m_process.waitForBytesWritten();
}

Mutator::Times Mutator::times()
{
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(60'000))
            fail("another process");
    }
    const QList<QByteArray> words = m_process.readLine().trimmed().split(' ');
    return {words[0].toLongLong(), words[1].toLongLong()};
}

// --- The process that keeps an index and says what it costs

static double statusValue(const QString &path, const char *key)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.mid(static_cast<qsizetype>(std::strlen(key)))
                .trimmed()
                .split(' ')[0]
                .toDouble();
    }
    return 0;
}

static double memory(const char *key)
{
    return statusValue(QStringLiteral("/proc/self/status"), key) * 1024;
}

static double switches()
{
    double sum = 0;
    const QDir threads(QStringLiteral("/proc/self/task"));
    for (const QString &thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        sum += statusValue(threads.filePath(thread + QStringLiteral("/status")),
                           "voluntary_ctxt_switches:");
    return sum;
}

static double processorTime()
{
    rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

static double diskUse(const QString &store, bool text)
{
    double bytes = 0;
    QDirIterator files(XPPath::folder(store), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        if (files.fileName().contains(QStringLiteral(".text")) == text)
            bytes += static_cast<double>(files.fileInfo().size());
    }
    return bytes;
}

static int keepAndTell(const QString &root, bool contents)
{
    // The tables of file types are there with or without an index.
    (void)KPFileType::preferredUTIForExtension(QStringLiteral("pdf"));
    const StoreFolder folder;
    const PlainTexts plain;
    Footprint cost;
    const double before = memory("VmRSS:");
    const auto keeper = keep(folder.store(), {root});
    keeper->sync(contents);
    cost.peak = memory("VmHWM:") - before;
    // What is put off until nothing happens is done by then.
    keeper->sync(true);
    std::this_thread::sleep_for(12s);
    {
        const IndexCatalog::Reading reading(keeper->source().catalog());
        cost.items = static_cast<double>(keeper->source().catalog().count());
    }
    cost.memory = memory("VmRSS:") - before;
    cost.metadata = diskUse(folder.store(), false);
    cost.text = diskUse(folder.store(), true);
    const double switchesBefore = switches();
    const double processorBefore = processorTime();
    std::this_thread::sleep_for(10s);
    cost.processor = processorTime() - processorBefore;
    cost.switches = switches() - switchesBefore - 1; // this very sleep
    std::cout.precision(15);
    for (const double value : {cost.items, cost.memory, cost.peak, cost.metadata, cost.text,
                               cost.switches, cost.processor})
        std::cout << value << ' ';
    std::cout << std::endl;
    return 0;
}

const Footprint &footprint(const QString &root, bool contents)
{
    static std::map<std::pair<QString, bool>, Footprint> known;
    const auto found = known.find({root, contents});
    if (found != known.end())
        return found->second;
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(),
                  {QStringLiteral("--index-footprint"), root,
                   contents ? QStringLiteral("contents") : QString()});
    process.waitForFinished(-1);
    const QList<QByteArray> words = process.readAllStandardOutput().trimmed().split(' ');
    if (words.size() != 7)
        fail("footprint");
    return known[{root, contents}] = {words[0].toDouble(), words[1].toDouble(), words[2].toDouble(),
                                      words[3].toDouble(), words[4].toDouble(), words[5].toDouble(),
                                      words[6].toDouble()};
}

int runChild(int count, char **arguments)
{
    const bool mutates = count > 1 && std::strcmp(arguments[1], "--index-mutate") == 0;
    const bool keeps = count > 3 && std::strcmp(arguments[1], "--index-footprint") == 0;
    if (!mutates && !keeps)
        return -1;
    // Without what a window needs, which would stand in the figures.
    const QCoreApplication application(count, arguments);
    if (mutates)
        return mutate();
    return keepAndTell(XPPath::decode(QByteArrayView(arguments[2])),
                       std::strcmp(arguments[3], "contents") == 0);
}

} // namespace XPBench
