// KPSourceListModel: which rows there are.
#include "KPBookmarkItems.h"
#include "KPCrumbController.h"
#include "KPDateBasedItem.h"
#include "KPFileType.h"
#include "KPFileTypeItems.h"
#include "KPFileTypeRegistry.h"
#include "KPFilesAndFoldersItem.h"
#include "KPLastImportItem.h"
#include "KPLibraryItems.h"
#include "KPLocationItem.h"
#include "KPRowCounts.h"
#include "KPSearchFolders.h"
#include "KPSourceListModel.h"
#include "UserDefaults.h"

#include <QCoreApplication>
#include <array>

namespace {

const QString hiddenShownKey = QStringLiteral("KPShowHiddenItem");

// A heading: it opens and closes, and is no search.
class SectionItem : public KPBaseItem
{
public:
    SectionItem(const char *id, int children) : m_id(id), m_children(children) {}
    QString displayName() const override { return qtTrId(m_id); }
    QString persistantID() const override { return QLatin1String(m_id); }
    int numberOfChildren() const override { return m_children; }
    bool isSelectable() const override { return false; }

private:
    const char *m_id;
    int m_children;
};

constexpr std::array sectionNames = {
    QT_TRID_NOOP("KPSourceListLibrary"), QT_TRID_NOOP("KPSourceListDates"),
    QT_TRID_NOOP("KPSourceListKinds"), QT_TRID_NOOP("KPSourceListPlaces"),
    QT_TRID_NOOP("KPSourceListSaved")};

} // namespace

KPSourceListModel::KPSourceListModel(KPCrumbController &controller, KPBookmarks &bookmarks,
                                     KPRowCounts *counts, QObject *parent)
    : QAbstractItemModel(parent), m_controller(controller), m_bookmarks(bookmarks),
      m_counts(counts), m_root(std::make_unique<Node>())
{
    for (int section = 0; section < SectionCount; ++section) {
        // Saved searches are dropped into their heading too.
        const KPBaseItem::Ptr heading =
            section == Saved
                ? KPBaseItem::Ptr(std::make_shared<KPBookmarkFolderItem>(bookmarks, QString()))
                : std::make_shared<SectionItem>(sectionNames[static_cast<size_t>(section)], 1);
        add(*m_root, heading);
        remake(static_cast<Section>(section));
    }
    connect(&bookmarks, &KPBookmarks::changed, this, [this] { remake(Saved); });
    m_observations.push_back(XPNotificationCenter::instance().addObserver(
        KPFileTypeRegistry::changedNotification,
        [this](const XPNotification &) { remake(Kinds); }));
    m_observations.push_back(XPNotificationCenter::instance().addObserver(
        KPSearchFolders::fileSystemMayHaveChanged,
        [this](const XPNotification &) { remake(Places); }));
    follow(QStringLiteral("values.KPSearchFolders"), Places);
    follow(QStringLiteral("values.KPHomeFolder"), Places);
    follow(QStringLiteral("values.") + hiddenShownKey, Library);
    if (counts) {
        connect(counts, &KPRowCounts::countsChanged, this, [this] {
            for (int section = 0; section < SectionCount; ++section) {
                const QModelIndex above = index(section, 0);
                if (const int rows = rowCount(above); rows > 0)
                    Q_EMIT dataChanged(index(0, 0, above), index(rows - 1, 0, above), {CountText});
            }
        });
    }
}

KPSourceListModel::~KPSourceListModel() = default;

void KPSourceListModel::follow(const QString &keyPath, Section section)
{
    m_observations.push_back(UserDefaults::standard().addObserver(
        keyPath, [this, section](const PropertyValue &) { remake(section); }));
}

KPSourceListModel::Node *KPSourceListModel::add(Node &above, const KPBaseItem::Ptr &item)
{
    auto node = std::make_unique<Node>();
    node->item = item;
    node->above = &above;
    item->setParentFolder(above.item);
    above.below.push_back(std::move(node));
    return above.below.back().get();
}

void KPSourceListModel::remake(Section section)
{
    static constexpr std::array<Maker, SectionCount> makers = {
        &KPSourceListModel::makeLibrary, &KPSourceListModel::makeDates,
        &KPSourceListModel::makeKinds, &KPSourceListModel::makePlaces,
        &KPSourceListModel::makeSaved};
    Node &node = *m_root->below[section];
    Node made;
    made.item = node.item;
    (this->*makers[section])(made);
    const QModelIndex heading = index(section, 0);
    if (!node.below.empty()) {
        beginRemoveRows(heading, 0, static_cast<int>(node.below.size()) - 1);
        const auto old = std::exchange(node.below, {});
        endRemoveRows();
    }
    if (made.below.empty())
        return;
    beginInsertRows(heading, 0, static_cast<int>(made.below.size()) - 1);
    node.below = std::move(made.below);
    for (const auto &below : node.below)
        below->above = &node;
    endInsertRows();
}

void KPSourceListModel::setLastImport(const KPSearchState::Ptr &fileList)
{
    m_lastImport = fileList;
    remake(Library);
}

// --- Sections

void KPSourceListModel::makeLibrary(Node &section) const
{
    add(section, m_controller.allDocumentsItem());
    add(section, m_controller.taggedItem());
    add(section, std::make_shared<KPUntaggedItem>());
    add(section, std::make_shared<KPFlagItem>());
    add(section, std::make_shared<KPManagedItem>());
    add(section, std::make_shared<KPLastImportItem>(m_lastImport));
    if (UserDefaults::standard().boolValue(hiddenShownKey))
        add(section, std::make_shared<KPHiddenItem>());
}

void KPSourceListModel::makeDates(Node &section) const
{
    using namespace KPSearchDates;
    for (const QString &key : {today, yesterday, last7Days, last30Days, last365Days, thisYear,
                               lastYear, yearBeforeLastYear, olderThanYearBeforeLastYear})
        add(section, std::make_shared<KPDateBasedItem>(key));
}

void KPSourceListModel::makeKinds(Node &section) const
{
    for (const auto &group : KPFileTypeRegistry::instance().fileTypeGroupsArray()) {
        if (!group->enabled() || group->utiArray().isEmpty())
            continue;
        Node *node = add(section, std::make_shared<KPFileTypesItem>(*group));
        if (group->utiArray().size() < 2)
            continue;
        for (const QString &type : group->utiArray()) {
            const bool isTree = type.startsWith(KPSearchState::treePrefix);
            const QString uti = isTree ? type.mid(KPSearchState::treePrefix.size()) : type;
            add(*node, std::make_shared<KPFileTypesItem>(KPFileType::displayNameForUTI(uti),
                                                         QStringList{type}));
        }
    }
    add(section, std::make_shared<KPStandardFileTypesItem>());
    add(section, std::make_shared<KPAllFileTypesItem>());
}

void KPSourceListModel::makePlaces(Node &section) const
{
    KPSearchFolders &folders = KPSearchFolders::instance();
    Node *search = add(section, KPLocationItem::searchFolders());
    for (const QString &folder : folders.userSearchFolders())
        add(*search, KPLocationItem::withFolder(folder));
    Node *filed = add(section, KPLocationItem::withFolder(KPSearchFolders::filedDocuments));
    for (const QString &place : {KPSearchFolders::filedToday, KPSearchFolders::filedThisMonth,
                                 KPSearchFolders::filedPast7Days})
        add(*filed, KPLocationItem::withFolder(place));
    add(section, KPLocationItem::withFolder(KPSearchFolders::homeFolder()));
    for (const QString &volume : folders.mountedVolumes())
        add(section, KPLocationItem::withFolder(volume));
    add(section, KPLocationItem::everywhere());
    add(section, std::make_shared<KPFilesAndFoldersItem>(false));
    add(section, std::make_shared<KPFilesAndFoldersItem>(true));
}

void KPSourceListModel::makeSaved(Node &section) const
{
    addBookmarks(section, m_bookmarks.root());
}

// NOLINTNEXTLINE(misc-no-recursion): the depth of a file of saved searches is limited
void KPSourceListModel::addBookmarks(Node &above, const KPBookmark &folder) const
{
    for (const KPBookmark &each : folder.children) {
        if (each.isFolder)
            addBookmarks(
                *add(above, std::make_shared<KPBookmarkFolderItem>(m_bookmarks, each.identifier)),
                each);
        else
            add(above, std::make_shared<KPBookmarkItem>(m_bookmarks, each.identifier));
    }
}
