#pragma once

#include "XPError.h"
#include "XPFileDescriptor.h"

#include <QHash>
#include <QJsonObject>
#include <QObject>
#include <QProcess>
#include <QTemporaryDir>
#include <functional>

class QSocketNotifier;

// An installed web browser, run without a window and with a profile of its own that goes with it:
// it knows no cookie, password or extension of the user's. Spoken to by the browser's own protocol
// for developers, over a socket pair, so that nobody else on the machine can.
//
// Understood: the browsers built on Chromium, which all take these options.
// Threads: main.
class XPBrowserProcess : public QObject
{
    Q_OBJECT

public:
    XPBrowserProcess();
    ~XPBrowserProcess() override; // ends it

    // The program, by the path of this session. Nothing: none of those is installed.
    static std::optional<QString> findProgram();
    // Which to install, in words.
    static QString whatToInstall();

    std::optional<XPError> start(const QString &program);
    using Answer = std::function<void(const QJsonObject &result, const QString &error)>;
    // `session`: of a page; empty is the browser itself.
    void ask(const QString &method, const QJsonObject &parameters, const QString &session,
             const Answer &answer);

Q_SIGNALS:
    void told(const QString &event, const QJsonObject &parameters);
    // It died or said what nobody can understand.
    void lost(const QString &reason);

private:
    void read();
    void take(const QByteArray &message);

    QTemporaryDir m_profile;
    QProcess m_process;
    XPFileDescriptor m_socket;
    QSocketNotifier *m_notifier = nullptr;
    QByteArray m_unread;
    QHash<int, Answer> m_answers;
    int m_lastId = 0;
    bool m_isEnding = false;
};
