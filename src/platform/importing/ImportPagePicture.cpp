#include "ImportPagePicture.h"

#include "ImportDocument.h"
#include "ImportWorker.h"
#include "KPFileType.h"
#include "XPFileInfo.h"
#include "XPPath.h"
#include "XPPrograms.h"

static XPError failure(const QString &words, const QString &path)
{
    return XPError::make(XPError::Kind::Malformed, words, path);
}

XPResult<QImage> importPagePicture(const QString &path, int page, int pixels)
{
    const auto info = XPFileInfo::read(path);
    if (!info)
        return info.error();
    const auto document = ImportDocument::open(
        XPPath::encode(path), KPFileType::utiForPath(path, XPPath::extension(path), info->mode));
    if (!document)
        return document.error();
    ImportJob job = document->job();
    job.page = page;
    job.pixels = pixels;
    ImportWorker worker({.program = XPPrograms::helper("murn-importer"), .idle = false});
    const auto outcome = worker.run(job, document->descriptor.get());
    if (const auto *error = std::get_if<XPError>(&outcome))
        return *error;
    if (const auto *end = std::get_if<ImportWorker::Break>(&outcome))
        return failure(documentFailureName(end->failure) + QStringLiteral(": ") + end->reason,
                       path);
    const auto picture = ImportPicture::from(std::get<ImportFrame>(outcome));
    if (!picture)
        return picture.error();
    if (picture->failure)
        return failure(documentFailureName(*picture->failure), path);
    const QImage image(reinterpret_cast<const uchar *>(picture->pixels.constData()), picture->width,
                       picture->height, qsizetype{picture->width} * 4,
                       QImage::Format_ARGB32_Premultiplied);
    return image.copy(); // the bytes are the picture's
}
