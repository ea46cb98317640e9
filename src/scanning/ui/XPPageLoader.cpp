#include "XPPageLoader.h"

#include "XPScannedPages.h"

#include <QThread>

struct XPPageLoader::Private
{
    QThread thread;
    QObject worker; // lives there
};

XPPageLoader::XPPageLoader() : d(std::make_unique<Private>())
{
    d->worker.moveToThread(&d->thread);
    d->thread.start();
}

XPPageLoader::~XPPageLoader()
{
    // After what waits: it may be a document that is being written.
    QMetaObject::invokeMethod(
        &d->worker, [this] { d->thread.quit(); }, Qt::QueuedConnection);
    d->thread.wait();
}

void XPPageLoader::run(std::function<void()> work, std::function<void()> done)
{
    QMetaObject::invokeMethod(
        &d->worker,
        [this, work = std::move(work), done = std::move(done)] {
            work();
            QMetaObject::invokeMethod(this, done, Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

void XPPageLoader::load(const QString &path, std::function<void(const QImage &)> done)
{
    const auto image = std::make_shared<QImage>();
    run(
        [path, image] {
            *image = XPScannedPages::rendered(path, {});
            if (std::max(image->width(), image->height()) > screenSide)
                *image = image->scaled(screenSide, screenSide, Qt::KeepAspectRatio,
                                       Qt::SmoothTransformation);
        },
        [image, done = std::move(done)] { done(*image); });
}
