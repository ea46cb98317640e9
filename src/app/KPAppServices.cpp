#include "KPAppServices.h"

void KPAppServices::revealInLibrary(const QStringList &paths)
{
    Q_EMIT revealAsked(paths);
}

void KPAppServices::openInfoWindow(const QStringList &paths)
{
    Q_EMIT infoAsked(paths);
}

void KPAppServices::runFileWork(std::function<void()> work, std::function<void()> done)
{
    m_worker.run(std::move(work), std::move(done));
}
