#pragma once

#include <QObject>
#include <QString>

class KPController;

// Takes a picture of the window as soon as everything is found and drawn, and quits the program:
// 0, or 1 when the file could not be written. For the documentation and for displays that nobody
// looks at; works on the offscreen platform. Threads: main.
class KPScreenshot : public QObject
{
    Q_OBJECT

public:
    // `selection`: documents whose names begin so are selected first.
    KPScreenshot(KPController *controller, const QString &file, const QString &selection);

private:
    void lookAgain();
    void take();

    KPController *m_controller;
    const QString m_file;
    QString m_selection;
    int m_quietTurns = 0;
};
