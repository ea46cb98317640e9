#include "XPWebPages.h"

#include "Karvex.h"
#include "XPPasteboardSupport.h"

#include <QCoreApplication>
#include <QUrl>

XPResult<QString> XPWebPages::file(const QByteArray &pdf, const QString &title,
                                   const QString &address, const QString &folder)
{
    auto pasteboard = XPPasteboard::of(QStringLiteral("application/pdf"), pdf);
    pasteboard.setUrlName(title.trimmed().isEmpty() ? QUrl(address).host() : title);
    const auto paths = folder.isEmpty()
                           ? XPPasteboardSupport::importFromPBToFiledDocuments(pasteboard)
                           : XPPasteboardSupport::importPDF(pasteboard, folder);
    if (!paths)
        return paths.error();
    if (paths->isEmpty())
        return XPError::malformed(qtTrId("XPPageNoDocument"));
    const QString path = paths->first();
    if (auto error = Karvex::setNSArrayMetaData(QStringList{address}, Karvex::bookmarksKey, path))
        return *error;
    return path;
}
