#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

// Work for a measurement that must be done by another process: this same program, started again.
namespace XPBench {

// What main() does when its first argument says that it is such a process; -1: it is none.
int runChild(int count, char **arguments);

// Changes files when told to.
class Mutator
{
public:
    Mutator();
    ~Mutator();

    // Starts one change: "rate PATH N" (0 removes), "write PATH TEXT", "rename PATH PATH",
    // "delete PATH", "touch FOLDER N" (times and rating of N files "burst-…"); arguments without
    // blanks. Returns at once.
    void begin(const QByteArray &change);
    // When the change was begun and done, in nanoseconds of the monotonic clock, which all
    // processes share. Waits for it.
    struct Times
    {
        qint64 begun = 0;
        qint64 done = 0;
    };
    Times times();

private:
    QProcess m_process;
};

qint64 monotonicNow(); // nanoseconds

// What an index of a folder costs its process.
struct Footprint
{
    double items = 0;
    double memory = 0;    // bytes of the process at rest, less those before there was an index
    double peak = 0;      // the most while indexing, less the same
    double metadata = 0;  // bytes of the store on disk
    double text = 0;      // bytes of the text store on disk
    double switches = 0;  // voluntary context switches in ten seconds at rest, all threads
    double processor = 0; // seconds of processor time in them
};
// Indexes `root` in a process of its own; `contents`: text too. The result is kept for later calls.
const Footprint &footprint(const QString &root, bool contents);

} // namespace XPBench
