#pragma once

#include <QApplication>
#include <functional>

// The application object: turns a wish to quit, wherever it comes from (the menu, the desktop's
// session, a signal such as SIGTERM), into one orderly end.
// Threads: main.
class KPApplication : public QApplication
{
    Q_OBJECT

public:
    KPApplication(int &argc, char **argv);

    // Asked before the program ends; false: not now.
    void setShouldTerminate(std::function<bool()> ask) { m_shouldTerminate = std::move(ask); }
    // SIGTERM, SIGINT and SIGHUP end the program in its orderly way. Once.
    void quitOnSignals();

protected:
    bool event(QEvent *event) override;
    bool notify(QObject *receiver, QEvent *event) override;

private:
    std::function<bool()> m_shouldTerminate;
};
