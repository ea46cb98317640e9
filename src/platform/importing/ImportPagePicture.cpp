#include "ImportPagePicture.h"

#include "ImportDocument.h"
#include "ImportPageDrawing.h"
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
    ImportWorker worker({.program = XPPrograms::helper("murn-importer"), .idle = false});
    auto drawn = importPage(worker, *document, page, pixels);
    if (!drawn)
        return drawn.error();
    if (!drawn->failure)
        return std::move(drawn->image);
    const QString name = documentFailureName(*drawn->failure);
    return failure(drawn->reason.isEmpty() ? name : name + QStringLiteral(": ") + drawn->reason,
                   path);
}
