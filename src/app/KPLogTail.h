#pragma once

#include <QtGlobal>
#include <array>
#include <atomic>
#include <cstddef>

// The last lines of the log, kept in fixed memory for a report of a crash.
//
// A line holds the time, its severity, where in the program it was written, and the words of it
// up to where the name of something could begin: a report tells nothing of the user's documents.
// Threads: any; line() may be called in a signal handler, where a line that is being written just
// then may come out torn.
class KPLogTail
{
public:
    static constexpr size_t lineCount = 64;
    static constexpr size_t lineLength = 200; // bytes with the ending NUL

    // From now on every line of Qt's log is kept too. Once, at start-up.
    static void install();
    // The lines kept, oldest first: `number` from 0; null behind the last. Never allocates.
    static const char *line(size_t number);

    // Writes the words of a line as they are kept to `line`; what may be said of it in a report.
    static void write(std::array<char, lineLength> &line, QtMsgType type, const char *file,
                      int fileLine, const QString &message);
};
