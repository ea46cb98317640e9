#include "XPAuthenticatedTrash.h"

#include "KPDocServices.h"
#include "XPAuthorisation.h"
#include "XPFileDescriptor.h"
#include "XPFileInfo.h"
#include "XPFileUtils.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPVolumeFacts.h"
#include "XPVolumes.h"

#include <QDateTime>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

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

// A folder of this user's own, and no link to one.
static bool makeOwn(const QString &folder)
{
    const QByteArray bytes = XPPath::encode(folder);
    struct stat status = {};
    if (::mkdir(bytes.constData(), 0700) != 0 && errno != EEXIST)
        return false;
    return ::lstat(bytes.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid();
}

static bool makeTrash(const QString &trash)
{
    return makeOwn(trash) && makeOwn(trash + QStringLiteral("/files")) &&
           makeOwn(trash + QStringLiteral("/info"));
}

XPResult<QString> TrashFolderForPath(const QString &path)
{
    const QString home = XPFolders::trash();
    if (PathsOnSameVol(path, home) && !XPFolders::create(XPPath::folder(home)) && makeTrash(home))
        return home;
    const QString top = XPVolumes::volumeOf(XPPath::absolute(path)).mountPoint;
    const QString below = top == u"/" ? QString() : top;
    const QString user = QString::number(::geteuid());
    const QString shared = below + QStringLiteral("/.Trash");
    const auto info = XPFileInfo::read(shared);
    const QString ofUser = shared + u'/' + user;
    if (info && info->isDirectory() && (info->mode & S_ISVTX) != 0 && makeTrash(ofUser))
        return ofUser;
    const QString own = below + QStringLiteral("/.Trash-") + user;
    if (makeTrash(own))
        return own;
    return XPError::make(Kind::Unsupported, QStringLiteral("no trash on this volume"), path);
}

// By which the desktop knows where the file was; relative to the volume unless in the home's trash.
static QByteArray trashInfo(const QString &path, const QString &trash)
{
    QString from = XPPath::absolute(path);
    if (trash != XPFolders::trash()) {
        const QString top = XPVolumes::volumeOf(from).mountPoint;
        from = from.mid(top == u"/" ? 1 : top.size() + 1);
    }
    const QString now =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
    return "[Trash Info]\nPath=" + XPPath::encode(from).toPercentEncoding("/") +
           "\nDeletionDate=" + now.toLatin1() + '\n';
}

static bool writeNew(const QByteArray &path, const QByteArray &bytes)
{
    XPFileDescriptor file(
        ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    return file.isOpen() &&
           ::write(file.get(), bytes.constData(), static_cast<size_t>(bytes.size())) ==
               bytes.size() &&
           file.close();
}

static std::optional<XPError> moveWithRights(const Removal &removal, const QString &trash)
{
    const QString files = trash + QStringLiteral("/files");
    const QString name = XPPath::fileName(
        XPFileUtils::findUnusedPath(files + u'/' + XPPath::fileName(removal.path)));
    const QByteArray info =
        XPPath::encode(trash + QStringLiteral("/info/") + name + QStringLiteral(".trashinfo"));
    if (!writeNew(info, trashInfo(removal.path, trash)))
        return XPError::fromErrno(errno, removal.path);
    auto error = XPAuthorisation::shared().moveToTrash(
        removal.path, removal.confirmed, files, name,
        QStringLiteral("We require authorization to move some files"));
    if (error)
        ::unlink(info.constData());
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
