#include "KPApplication.h"

#include "KPWindowFrame.h"
#include "XPError.h"
#include "XPLog.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QSocketNotifier>
#include <QWidget>
#include <array>
#include <cerrno>
#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>

static constexpr std::array<int, 3> quitSignals = {SIGTERM, SIGINT, SIGHUP};
static int wakeUp = -1; // an eventfd

extern "C" {
static void wakeUpToQuit(int signal)
{
    Q_UNUSED(signal)
    const int error = errno;
    const uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(wakeUp, &one, sizeof one);
    errno = error;
}
}

KPApplication::KPApplication(int &argc, char **argv) : QApplication(argc, argv)
{
    KPWindowFrame::tellWindows();
}

void KPApplication::quitOnSignals()
{
    wakeUp = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK); // for the process
    if (wakeUp < 0) {
        qCWarning(xpLog) << "signals end the program at once:" << xpErrnoString(errno);
        return;
    }
    connect(new QSocketNotifier(wakeUp, QSocketNotifier::Read, this), &QSocketNotifier::activated,
            this, [] {
                uint64_t count = 0;
                [[maybe_unused]] const ssize_t got = ::read(wakeUp, &count, sizeof count);
                quit();
            });
    struct sigaction action = {};
    action.sa_handler = wakeUpToQuit;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND); // a second one ends it at once
    ::sigemptyset(&action.sa_mask);
    for (const int signal : quitSignals)
        ::sigaction(signal, &action, nullptr);
}

// Not QApplication's way, which closes every window and stays when one only hides.
bool KPApplication::event(QEvent *event)
{
    if (event->type() != QEvent::Quit)
        return QApplication::event(event);
    if (m_shouldTerminate && !m_shouldTerminate())
        event->ignore();
    else
        exit(0);
    return true;
}

static bool asksForMenu(const QEvent &event)
{
    if (event.type() != QEvent::KeyPress)
        return false;
    const auto &key = static_cast<const QKeyEvent &>(event);
    return key.key() == Qt::Key_F10 && key.modifiers() == Qt::ShiftModifier;
}

// Keyboards without a menu key have no other way to a menu; the toolkit knows that key alone.
bool KPApplication::notify(QObject *receiver, QEvent *event)
{
    QWidget *widget = focusWidget();
    if (!widget || receiver != widget || !asksForMenu(*event))
        return QApplication::notify(receiver, event);
    const QPoint at = widget->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, at, widget->mapToGlobal(at));
    sendEvent(widget, &menu);
    event->accept();
    return true;
}
