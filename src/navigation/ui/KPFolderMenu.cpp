#include "KPFolderMenu.h"

#include "KPDocIcons.h"
#include "XPInBackground.h"
#include "XPPath.h"

static constexpr size_t mostShown = 200; // a menu with more is no way to find one

KPFolderMenu::KPFolderMenu(const QString &folder, QWidget *parent)
    : QMenu(qtTrId("KPFolderMenu"), parent), m_folder(folder)
{
    setToolTipsVisible(true);
    connect(this, &QMenu::aboutToShow, this, &KPFolderMenu::read);
}

KPFolderMenu::~KPFolderMenu()
{
    if (m_isGone)
        *m_isGone = true;
}

void KPFolderMenu::read()
{
    if (m_isGone)
        return;
    addAction(qtTrId("KPFolderMenuReading"))->setEnabled(false);
    m_isGone = std::make_shared<std::atomic<bool>>(false);
    const auto work = [folder = m_folder, isGone = m_isGone] {
        auto listing = KPDirectoryListing::of(
            folder,
            {.invisible = false, .foldersOnly = true, .stop = [isGone] { return isGone->load(); }});
        if (listing) {
            KPDirectoryListing sorted = *std::move(listing);
            sorted.displayNameSortFinderStyle();
            listing = std::move(sorted);
        }
        return listing;
    };
    xpInBackground(this, work,
                   [this](const XPResult<KPDirectoryListing> &listing) { show(listing); });
}

void KPFolderMenu::show(const XPResult<KPDirectoryListing> &listing)
{
    clear();
    const auto say = [this](const QString &text) { addAction(text)->setEnabled(false); };
    if (!listing)
        return say(listing.error().reason());
    const auto &folders = listing->children();
    if (folders.empty())
        return say(qtTrId("KPFolderMenuNone"));
    const QIcon icon = KPDocIcons::symbol(QStringLiteral("folder"));
    for (size_t at = 0; at < folders.size() && at < mostShown; ++at) {
        const QString path = listing->pathOf(folders[at]);
        QAction *action = addAction(
            icon, XPPath::printable(folders[at].name).replace(u'&', QStringLiteral("&&")));
        connect(action, &QAction::triggered, this, [this, path] { Q_EMIT chosen(path); });
    }
    if (folders.size() > mostShown)
        say(qtTrId("KPAndMore", static_cast<int>(folders.size() - mostShown)));
}
