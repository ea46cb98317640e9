#include "PackagePreview.h"

#include "PictureDecoding.h"
#include "ZipPackage.h"

std::optional<DocumentFailure> packagePreview(const DocumentSource &source,
                                              const QList<QByteArray> &names, int page, int pixels,
                                              QImage &image)
{
    if (page > 1)
        return DocumentFailure::Unsupported;
    const auto package = ZipPackage::read(
        source, [&](QByteArrayView name) { return names.contains(name.toByteArray()); });
    if (!package)
        return DocumentFailure::Unsupported;
    for (const QByteArray &name : names) {
        if (package->hasPart(name))
            return PictureDecoding::decode(package->part(name), pixels, image);
    }
    return DocumentFailure::Unsupported;
}
