#include "XPPageLoader.h"

#include "XPMainThread.h"
#include "XPMutex.h"
#include "XPScannedPages.h"

#include <QPointer>
#include <condition_variable>
#include <deque>
#include <thread>

struct XPPageLoader::Private
{
    void work();

    XPMutex mutex;
    std::condition_variable_any wake;
    std::deque<std::function<void()>> waiting XP_GUARDED_BY(mutex);
    bool isEnding XP_GUARDED_BY(mutex) = false;
    std::thread thread;
};

void XPPageLoader::Private::work()
{
    XPLocker locker(mutex);
    while (!isEnding || !waiting.empty()) {
        if (waiting.empty()) {
            wake.wait(locker);
            continue;
        }
        const auto piece = std::move(waiting.front());
        waiting.pop_front();
        locker.unlock();
        piece();
        locker.lock();
    }
}

XPPageLoader::XPPageLoader() : d(std::make_unique<Private>())
{
    d->thread = std::thread([this] { d->work(); });
}

XPPageLoader::~XPPageLoader()
{
    {
        const XPLocker locker(d->mutex);
        d->isEnding = true;
    }
    d->wake.notify_one();
    d->thread.join(); // after what waits: it may be a document that is being written
}

void XPPageLoader::run(std::function<void()> work, std::function<void()> done)
{
    {
        const XPLocker locker(d->mutex);
        d->waiting.emplace_back(
            [self = QPointer(this), work = std::move(work), done = std::move(done)] {
                work();
                xpOnMainThread([self, done] {
                    if (self)
                        done();
                });
            });
    }
    d->wake.notify_one();
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
