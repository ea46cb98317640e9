#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <optional>

class QProcess;

// A service of the user's own that starts at login: asked about, and switched on and off, through
// systemd's `systemctl --user`.
// Threads: main. Nothing waits: the answers come as signals.
class XPUserService : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Unknown, // not answered yet
        Absent,  // no such service here, or a session without systemd
        Off,
        On,
    };

    // `unit`: its file's name.
    explicit XPUserService(const QString &unit, QObject *parent = nullptr);

    State state() const { return m_state; }
    void refresh();
    // Starts or ends it at once, too. What it is asked while it still works on the last time waits.
    void setOn(bool on);

Q_SIGNALS:
    void changed();
    void failed(const QString &reason); // in systemctl's words; may be empty

private:
    using Done = std::function<void(bool worked, const QByteArray &output)>;
    void run(const QStringList &arguments, const Done &done);

    const QString m_unit;
    State m_state = State::Unknown;
    QProcess *m_process = nullptr; // while one runs
    std::optional<bool> m_wanted;  // after it
};
