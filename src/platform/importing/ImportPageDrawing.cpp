#include "ImportPageDrawing.h"

#include "ImportDocument.h"
#include "ImportWorker.h"

#include <memory>

// The pixels stay where they came; the image owns them.
static QImage imageOf(ImportPicture picture)
{
    auto pixels = std::make_unique<QByteArray>(std::move(picture.pixels));
    const auto *data = reinterpret_cast<const uchar *>(pixels->constData());
    return {data,
            picture.width,
            picture.height,
            qsizetype{picture.width} * 4,
            QImage::Format_ARGB32_Premultiplied,
            [](void *owner) { delete static_cast<QByteArray *>(owner); },
            pixels.release()};
}

XPResult<ImportedPage> importPage(ImportWorker &worker, const ImportDocument &document, int page,
                                  int pixels, const std::stop_token &stop)
{
    ImportJob job = document.job();
    job.page = page;
    job.pixels = pixels;
    auto outcome = worker.run(job, document.descriptor.get(), stop);
    if (const auto *error = std::get_if<XPError>(&outcome))
        return *error;
    if (const auto *end = std::get_if<ImportWorker::Break>(&outcome))
        return ImportedPage{{}, end->failure, end->reason};
    auto picture = ImportPicture::from(std::get<ImportFrame>(outcome));
    if (!picture)
        return ImportedPage{{}, DocumentFailure::Crashed, picture.error().message};
    if (picture->failure)
        return ImportedPage{{}, picture->failure, {}};
    return ImportedPage{imageOf(*std::move(picture)), {}, {}};
}
