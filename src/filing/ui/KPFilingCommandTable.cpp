// KPFilingCommands: the table, and the menus of recent folders.
#include "KPDoc.h"
#include "KPDocumentTargets.h"
#include "KPFilingCommands.h"
#include "XPFiledDocuments.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPRecentDestinations.h"
#include "XPVolumes.h"

#include <QGuiApplication>
#include <algorithm>

// Whether it is so for one of the documents; of many, or on a volume that may hang, it is only
// supposed.
template <typename Test>
static bool isSoForOne(const KPDocumentTargets &targets, Test test)
{
    constexpr qsizetype mostLookedAt = 20;
    const qsizetype count = targets.documentCount();
    if (count == 0 || count > mostLookedAt)
        return count > 0;
    const KPDoc::Docs docs = targets.documents();
    return std::any_of(docs.begin(), docs.end(), [&](const KPDoc *doc) {
        return XPVolumes::isOnSlowVolume(doc->filePath()) || test(doc->filePath());
    });
}

// Another mark, or none, or one that cannot be read.
bool KPFilingCommands::canMark(bool managed) const
{
    return isSoForOne(m_targets, [managed](const QString &path) {
        const auto mark = XPFiledDocuments::storedMark(path);
        return !mark || *mark != managed;
    });
}

bool KPFilingCommands::canPutInFiledDocuments() const
{
    return isSoForOne(m_targets, [](const QString &path) {
        return !XPFiledDocuments::pathIsAlreadyInGoodPlaceInFiledDocuments(path);
    });
}

QList<KPCommand> KPFilingCommands::commands()
{
    xpGuiThread.assertHere();
    using C = KPFilingCommands;
    constexpr auto menu = KPCommandMenu::Documents;
    const auto some = [this] { return KPCommandState{m_targets.documentCount() > 0}; };
    const auto marks = [this](bool managed) {
        return [this, managed] { return KPCommandState{canMark(managed)}; };
    };
    const auto files = [this] { return KPCommandState{canPutInFiledDocuments()}; };
    const auto recent = [this] {
        return KPCommandState{m_targets.documentCount() > 0 &&
                              !XPRecentDestinations::paths().isEmpty()};
    };
    const auto call = [this](auto member, auto... arguments) {
        return [this, member, arguments...] {
            xpGuiThread.assertHere();
            (this->*member)(arguments...);
        };
    };
    const auto moveCopy = [this](bool doCopy) {
        return [this, doCopy] {
            xpGuiThread.assertHere();
            moveCopySelectedTo(doCopy);
        };
    };
    const auto add = [this] {
        xpGuiThread.assertHere();
        addSelectedToLibrary(QGuiApplication::keyboardModifiers().testFlag(Qt::AltModifier));
    };
    const auto submenu = [this](bool doCopy) {
        return [this, doCopy] { return recentMenu(doCopy); };
    };
    constexpr auto ctrlShift = Qt::CTRL | Qt::SHIFT;
    return {
        {QT_TRID_NOOP("KPFileDocuments"), menu, QKeySequence(Qt::CTRL | Qt::Key_E), add, some,
         "file-into", true},
        {QT_TRID_NOOP("KPPutInFiledDocuments"),
         menu,
         {},
         call(&C::putInFiledDocuments),
         files,
         "",
         true},
        {QT_TRID_NOOP("KPMoveToFiledDocuments"),
         menu,
         {},
         call(&C::moveSelectedToFiledDocumentsFolder),
         files,
         "",
         true},
        {QT_TRID_NOOP("KPManage"), menu, {}, call(&C::manageSelected), marks(true), "", true},
        {QT_TRID_NOOP("KPUnmanage"),
         menu,
         {},
         call(&C::removeOrDeleteSelected, false),
         marks(false),
         "",
         true,
         true,
         "Del"},
        {QT_TRID_NOOP("KPMoveTo"), menu, QKeySequence(ctrlShift | Qt::Key_M), moveCopy(false), some,
         "move-to", true},
        {QT_TRID_NOOP("KPMoveToRecent"), menu, {}, {}, recent, "", true, false, "", submenu(false)},
        {QT_TRID_NOOP("KPCopyTo"), menu, {}, moveCopy(true), some, "copy-to", true},
        {QT_TRID_NOOP("KPCopyToRecent"), menu, {}, {}, recent, "", true, false, "", submenu(true)},
        {QT_TRID_NOOP("KPDuplicate"), menu, QKeySequence(ctrlShift | Qt::Key_D),
         call(&C::duplicateSelected), some, "", true, true},
        {QT_TRID_NOOP("KPMoveToTrash"), menu, QKeySequence(Qt::CTRL | Qt::Key_Delete),
         call(&C::removeOrDeleteSelected, true), some, "trash", true, true},
    };
}

KPCommand KPFilingCommands::pasteCommand()
{
    return {QT_TRID_NOOP("KPPaste"), KPCommandMenu::Edit, QKeySequence::Paste,
            [this] {
                xpGuiThread.assertHere();
                paste();
            },
            [this] { return KPCommandState{canPaste()}; }};
}

// The command's own action is shown for the menu, which therefore has no title.
QMenu *KPFilingCommands::recentMenu(bool doCopy)
{
    auto *menu = new QMenu;
    connect(menu, &QMenu::aboutToShow, this, [this, menu, doCopy] {
        xpGuiThread.assertHere();
        fillRecentMenu(menu, doCopy);
    });
    return menu;
}

void KPFilingCommands::fillRecentMenu(QMenu *menu, bool doCopy)
{
    menu->clear();
    for (const QString &folder : XPRecentDestinations::paths()) {
        QString text = XPPath::printable(XPFolders::abbreviateWithTilde(folder));
        text.replace(u'&', QStringLiteral("&&"));
        QAction *action = menu->addAction(text);
        connect(action, &QAction::triggered, this, [this, folder, doCopy] {
            xpGuiThread.assertHere();
            moveCopySelectedTo(folder, doCopy);
        });
    }
}
