#pragma once

#include <QString>

// Writes a report when the program crashes: what the program and the system are, where it
// happened, the last lines of the log (KPLogTail); nothing of the user's documents, and nothing
// is sent anywhere.
//
// What is known before is made ready by start(); the handler calls only what is safe in a signal
// handler, on a stack of its own (the main thread's), and leaves the signal to the system then,
// so that a core dump comes too.
// Threads: main.
class KPCrashHandler
{
public:
    // Reports go into the folder (KPCrashReports), which is made if need be. False: they cannot.
    static bool start(const QString &folder);
    static bool isStarted();

    // Exceptions that nobody caught leave a line in the log before the program is aborted.
    static void installExceptionHandler();

    // What every report begins with: a program, its version and what it runs on.
    static QByteArray description();
};
