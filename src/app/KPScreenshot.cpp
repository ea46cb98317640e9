#include "KPScreenshot.h"

#include "KPController.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QPixmap>
#include <QTimer>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

static constexpr std::chrono::milliseconds interval{40};
static constexpr int enoughQuietTurns = 4; // layout, pictures and selection follow each other

KPScreenshot::KPScreenshot(KPController *controller, const QString &file, const QString &selection)
    : QObject(controller), m_controller(controller), m_file(file), m_selection(selection)
{
    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &KPScreenshot::lookAgain);
    timer->start(interval);
}

void KPScreenshot::lookAgain()
{
    m_quietTurns = m_controller->isSettled() ? m_quietTurns + 1 : 0;
    if (m_quietTurns < enoughQuietTurns)
        return;
    m_quietTurns = 0;
    if (m_selection.isEmpty()) {
        take();
        return;
    }
    m_controller->selectByName(std::exchange(m_selection, {}));
}

void KPScreenshot::take()
{
    const int descriptor =
        ::open(XPPath::encode(m_file).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    QFile file;
    const bool saved = descriptor >= 0 &&
                       file.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle) &&
                       m_controller->grab().save(&file, "PNG") && file.flush();
    if (!saved)
        std::fprintf(stderr, "murn: %s\n",
                     qUtf8Printable(qtTrId("KPScreenshotFailed").arg(XPPath::printable(m_file))));
    QCoreApplication::exit(saved ? 0 : 1);
    deleteLater();
}
