#pragma once

#include "KPCommandLine.h"

#include <QByteArray>

// What a command prints, and whether it failed.
//
// Standard output is collected and written in large pieces, as bytes; a failed write counts as a
// failure of the command. A failure is one line on standard error, "murnctl: PATH: message".
// Names with control characters are quoted for the shell ($'…') on a terminal and in failures,
// and written as they are everywhere else. Threads: main.
class KPCommandOutput
{
public:
    explicit KPCommandOutput(const KPCommandLine &line);

    bool isJson() const { return m_isJson; }
    bool isSeparatingByNul() const { return m_separator == '\0'; }
    void write(const QByteArray &bytes);
    // A name or a tag, then the separator: a line end, or NUL with --print0.
    void writeRecord(const QByteArray &bytes) { write(bytes + m_separator); }
    // The bytes to print for a name or a tag.
    QByteArray name(const QString &text) const;
    bool flush();

    // Something to know that is no failure, on standard error too.
    static void note(const QString &message);
    void fail(const QString &path, const QString &message);
    void fail(const QString &message);
    // A failure over a file; `what` of it, for errors that are not the system's own.
    void fail(const QString &path, const char *what, const XPError &error);

    // Writes what is left.
    int exitStatus();
    bool hasFailed() const { return m_hasFailed; }
    // Nobody reads on: the rest need not be found.
    bool isBroken() const { return m_isBroken; }

    // A JSON string, in quotes; undecodable bytes and other lone surrogates as \uXXXX.
    static QByteArray json(const QString &text);
    static QByteArray json(const QStringList &texts);

private:
    const bool m_isJson;
    const bool m_isQuoting;
    const char m_separator;
    bool m_hasFailed = false;
    bool m_isBroken = false;
    QByteArray m_buffer;
};

// A mistake of the user's, on standard error: murnctl: MESSAGE. Answers the exit status.
int kpReportUsage(const KPCommand *command, const QString &message);
