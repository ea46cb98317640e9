#include "XPAuthenticatedTrash.h"

#include "KPDocServices.h"
#include "XPAuthorisation.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPTrash.h"

#include <QCoreApplication>
#include <memory>

using Kind = XPError::Kind;
using Done = std::function<void(std::optional<XPError>)>;

namespace {

// One file on its way out.
struct Removal
{
    QString path;
    XPFileInfo confirmed;
    std::optional<XPError> error;
    bool hasNoTrash = false;
    bool isNothing = false;
};

} // namespace

XPResult<QString> MoveFileToTrash(const QString &path)
{
    return XPTrash::move(path);
}

XPResult<QString> TrashFolderForPath(const QString &path)
{
    return XPTrash::folderFor(path);
}

static std::optional<XPError> moveWithRights(const Removal &removal, const QString &trash)
{
    const auto place = XPTrash::reserve(trash, removal.path);
    if (!place)
        return place.error();
    auto error = XPAuthorisation::shared().moveToTrash(
        removal.path, removal.confirmed, XPPath::folder(*place), XPPath::fileName(*place),
        qtTrId("XPAuthorizeMoveComment"));
    if (error)
        XPTrash::release(*place);
    return error;
}

static void tryTrash(Removal &removal)
{
    const auto info = XPFileInfo::read(removal.path);
    removal.isNothing = !info || XPPath::absolute(removal.path) == XPFolders::home();
    if (removal.isNothing)
        return;
    removal.confirmed = *info;
    const auto trash = TrashFolderForPath(removal.path);
    removal.hasNoTrash = !trash;
    removal.error = trash ? moveWithRights(removal, *trash) : std::optional(trash.error());
}

static void removeForGood(const std::shared_ptr<Removal> &removal, const Done &done)
{
    KPDocServices::current().runFileWork(
        [=] {
            removal->error = XPAuthorisation::shared().remove(
                removal->path, removal->confirmed, qtTrId("KPRemoveImmediateAuthComment"));
        },
        [=] { done(removal->error); });
}

static void confirm(const std::shared_ptr<Removal> &removal, const Done &done)
{
    XPPrompts::Question question;
    question.title = qtTrId("KPRemoveConfirmationTitle");
    question.text = qtTrId("KPRemoveConfirmationComments")
                        .arg(XPPath::printable(XPPath::fileName(removal->path)));
    question.buttons = {qtTrId("KPRemoveConfirmationContinue"),
                        qtTrId("KPRemoveConfirmationCancel")};
    question.cancelButton = 1;
    XPPrompts::current().ask(question, [=](int answer) {
        if (answer == 0)
            removeForGood(removal, done);
        else
            done(XPError::make(Kind::Cancelled, QStringLiteral("not removed"), removal->path));
    });
}

void AuthenticatedMoveToTrash(const QString &path, const Done &done)
{
    const auto removal = std::make_shared<Removal>();
    removal->path = path;
    KPDocServices::current().runFileWork(
        [=] { tryTrash(*removal); },
        [=] {
            if (removal->hasNoTrash)
                XPPrompts::current().alert(qtTrId("XPNoTrashTitle"), qtTrId("XPNoTrashComment"));
            if (removal->isNothing || removal->hasNoTrash || !removal->error ||
                removal->error->kind == Kind::Cancelled)
                done(removal->error);
            else
                confirm(removal, done);
        });
}
