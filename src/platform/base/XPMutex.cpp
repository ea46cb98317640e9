#include "XPMutex.h"

#include <QCoreApplication>
#include <QThread>

const XPThreadRole xpGuiThread;

void XPThreadRole::assertHere() const
{
    Q_ASSERT(!qApp || QThread::currentThread() == qApp->thread());
}
