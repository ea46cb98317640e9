#include "KPMailing.h"

#include "KPFailures.h"
#include "KPLongWork.h"
#include "UserDefaults.h"
#include "XPFileInfo.h"
#include "XPFileSize.h"
#include "XPMail.h"
#include "XPPrompts.h"

#include <QLocale>

namespace {

struct Opened
{
    XPMail::Attachments attachments;
    QList<XPError> failures;
    qint64 size = 0;
};
using OpenedPtr = std::shared_ptr<Opened>;

} // namespace

// The long work's thread: volumes may be slow.
static OpenedPtr open(const QStringList &paths, const XPProgress::Task &task)
{
    auto opened = std::make_shared<Opened>();
    for (const QString &path : paths) {
        if (task->isStopAsked)
            break;
        auto attachment = XPMail::open(path);
        if (attachment) {
            if (const auto info = XPFileInfo::read(path)) // it may be gone by now
                opened->size += info->size;
            opened->attachments.push_back(std::move(attachment).value());
        } else {
            opened->failures.append(attachment.error());
            opened->failures.last().path = path;
        }
        ++task->done;
    }
    return opened;
}

static void compose(const OpenedPtr &opened) XP_REQUIRES(xpGuiThread)
{
    const QString program =
        UserDefaults::standard().value(QStringLiteral("KPPrefEmailWith")).string();
    XPMail::compose(std::move(opened->attachments), program,
                    [](const std::optional<XPError> &error) {
                        xpGuiThread.assertHere();
                        if (error)
                            XPPrompts::current().alert(qtTrId("KPNotMailed"), error->reason());
                    });
}

static void ask(const OpenedPtr &opened) XP_REQUIRES(xpGuiThread)
{
    const auto count = static_cast<qsizetype>(opened->attachments.size());
    if (count <= KPMailing::mostUnasked && opened->size <= KPMailing::mostBytesUnasked) {
        compose(opened);
        return;
    }
    XPPrompts::current().ask({qtTrId("KPMailManyTitle", static_cast<int>(count)),
                              qtTrId("KPMailManyText").arg(xpFileSizeInWords(opened->size)),
                              {qtTrId("KPMailManyButton"), qtTrId("KPCancel")},
                              1},
                             [opened](int button) {
                                 xpGuiThread.assertHere();
                                 if (button == 0)
                                     compose(opened);
                             });
}

void KPMailing::start(const QStringList &paths, KPLongWork &work)
{
    if (paths.size() > mostDocuments) {
        XPPrompts::current().alert(qtTrId("KPNotMailed"),
                                   qtTrId("KPMailTooMany").arg(QLocale().toString(mostDocuments)));
        return;
    }
    const auto task = std::make_shared<XPProgressTask>();
    task->title = qtTrId("KPMailPreparing", static_cast<int>(paths.size()));
    task->total = paths.size();
    work.run(
        task, [paths, task] { return open(paths, task); },
        [task](const OpenedPtr &opened) {
            xpGuiThread.assertHere();
            if (task->isStopAsked)
                return;
            if (opened->attachments.empty()) {
                KPFailures::tell(QT_TRID_NOOP("KPCannotMail"), opened->failures);
                return;
            }
            KPFailures::ask(QT_TRID_NOOP("KPCannotMail"), opened->failures, [opened] {
                xpGuiThread.assertHere();
                ask(opened);
            });
        });
}
