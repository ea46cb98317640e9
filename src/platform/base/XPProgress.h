#pragma once

#include <QString>
#include <atomic>
#include <memory>

// Work that takes long and can be stopped, as the one who shows it and the one who does it share
// it. Threads: any; the texts are set before it is begun.
struct XPProgressTask
{
    QString title;
    QString note; // what a stop does
    qint64 total = 0;
    bool isBeside = false; // the window can be used meanwhile
    std::atomic<qint64> done = 0;
    std::atomic<bool> isStopAsked = false;
};

// Where long work is shown, with a way to stop it.
//
// The application installs an implementation over windows, murnctl one over the terminal; both
// look at the task now and then, and show nothing of what is over soon.
// Threads: main.
class XPProgress
{
public:
    using Task = std::shared_ptr<XPProgressTask>;

    virtual ~XPProgress() = default;

    virtual void begin(const Task &task) = 0;
    virtual void end(const Task &task) = 0;

    // Never null: until something is installed nothing is shown, and nobody stops anything.
    static XPProgress &current();
    static void install(std::unique_ptr<XPProgress> progress);
};
