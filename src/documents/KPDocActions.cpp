// KPDoc: what is done with the file.
#include "KPDoc.h"
#include "KPDocServices.h"
#include "XPNotificationCenter.h"
#include "XPTrash.h"
#include "XPWorkspace.h"

#include <cerrno>

std::optional<XPError> KPDoc::openDoc() const
{
    return openDocExternal();
}

std::optional<XPError> KPDoc::openDocExternal() const
{
    return isGone() ? std::optional(XPError::fromErrno(ENOENT)) : XPWorkspace::open(filePath());
}

std::optional<XPError> KPDoc::openDocWithApp(const QString &app) const
{
    return isGone() ? std::optional(XPError::fromErrno(ENOENT))
                    : XPWorkspace::openWith({filePath()}, app);
}

void KPDoc::revealInFinder() const
{
    if (!isGone())
        XPWorkspace::reveal({filePath()});
}

void KPDoc::revealInMurn() const
{
    KPDocServices::current().revealInLibrary({filePath()});
}

void KPDoc::openFinderInfoWindow() const
{
    KPDocServices::current().openInfoWindow({filePath()});
}

void KPDoc::moveFileToTrash(const Trashed &done)
{
    const QString path = filePath();
    const auto inTrash = std::make_shared<std::optional<XPResult<QString>>>();
    KPDocServices::current().runFileWork([=] { inTrash->emplace(XPTrash::move(path)); },
                                         [=] { done(**inTrash); });
}

// The file at the path is no more. The record may stand for another by now.
static void becomeDeleted(KPDoc *doc, const QString &path)
{
    if (doc->filePath() == path) {
        doc->setFilePath(KPDoc::gonePath().toString());
        doc->dataChanged();
    }
    XPNotificationCenter::instance().post(KPDoc::deletedNotification, path);
}

void KPDoc::deleteDoc(KPDoc *doc, bool moveFileToTrash, const Trashed &done)
{
    const QString path = doc->filePath();
    if (doc->isGone() || !moveFileToTrash) {
        if (!doc->isGone())
            becomeDeleted(doc, path);
        done(QString());
        return;
    }
    doc->moveFileToTrash([=](const XPResult<QString> &inTrash) {
        if (inTrash)
            becomeDeleted(doc, path);
        done(inTrash);
    });
}
