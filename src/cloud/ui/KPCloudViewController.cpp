#include "KPCloudViewController.h"

#include "KPDocServices.h"
#include "KPElidedLabel.h"
#include "KPTagBranchMenu.h"
#include "KPTagClicks.h"
#include "KPTagEditing.h"
#include "KPTagMime.h"
#include "UserDefaults.h"
#include "XPPath.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLocale>
#include <QMenu>

static const QString alwaysKey = QStringLiteral("KPCloudAlwaysTags2");
static const QString neverKey = QStringLiteral("KPCloudNeverTags2");

static constexpr XPCloudView::StatusTemplates tagTexts{
    QT_TRID_NOOP("KPCloudTagsNone"), QT_TRID_NOOP("KPCloudTagsOne"),
    QT_TRID_NOOP("KPCloudTagsSome"), QT_TRID_NOOP("KPCloudTagsAll")};
static constexpr XPCloudView::StatusTemplates typeTexts{
    QT_TRID_NOOP("KPCloudTypesNone"), QT_TRID_NOOP("KPCloudTypesOne"),
    QT_TRID_NOOP("KPCloudTypesSome"), QT_TRID_NOOP("KPCloudTypesAll")};

KPCloudViewController::KPCloudViewController(const char *titleKey, QWidget *superView, int tagType,
                                             KPNavigator &navigator)
    : QObject(superView), m_navigator(navigator), m_tagType(tagType),
      m_heading(new QWidget(superView)), m_title(new QToolButton(m_heading)),
      m_description(new KPElidedLabel(m_heading)), m_view(new XPTextCloudView(this, superView))
{
    m_view->setStatusTemplates(tagType == KPCloudContents::fileTypes ? typeTexts : tagTexts);
    m_view->setAccessibleName(qtTrId(titleKey));
    m_title->setText(qtTrId(titleKey));
    m_title->setAutoRaise(true);
    m_title->setCheckable(true);
    m_title->setToolButtonStyle(Qt::ToolButtonTextOnly);
    m_title->setStyleSheet(QStringLiteral("QToolButton { border: 0; background: transparent;"
                                          " font-weight: 600; padding: 0; }"));
    m_title->setToolTip(qtTrId("KPCloudSectionTip"));
    m_description->setForegroundRole(QPalette::PlaceholderText);
    m_description->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto *row = new QHBoxLayout(m_heading);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_title);
    row->addWidget(m_description, 1);
    connect(m_title, &QToolButton::clicked, this, [this](bool shown) {
        UserDefaults::standard().setValue(groupKey(), PropertyValue::boolean(shown));
    });
}

QString KPCloudViewController::groupKey() const
{
    return m_tagType == KPCloudContents::fileTypes ? QStringLiteral("KPTagGroupFileTypes")
                                                   : QStringLiteral("KPTagGroupUserTags");
}

bool KPCloudViewController::hidden() const
{
    return !UserDefaults::standard().boolValue(groupKey());
}

// What the user always or never wants to see.

KPTagName::Tags KPCloudViewController::listed(const QString &setting) const
{
    return KPTagName::dictionaryOfKPTagNamesFromDictionary(
               UserDefaults::standard().value(setting).dictionary())
        .value(groupKey());
}

void KPCloudViewController::list(KPTagName *tag, const QString &setting, bool on) const
{
    auto lists = KPTagName::dictionaryOfKPTagNamesFromDictionary(
        UserDefaults::standard().value(setting).dictionary());
    KPTagName::Tags &tags = lists[groupKey()];
    tags.removeAll(tag);
    if (on)
        tags.append(tag);
    UserDefaults::standard().setValue(setting,
                                      KPTagName::dictionaryForSavingFromKPTagNameDictionary(lists));
}

// Contents.

KPSearcher::TagSets KPCloudViewController::getSortedTags() const
{
    return KPCloudContents::sortedTags(m_navigator.searcher(), m_tagType);
}

KPCloudContents KPCloudViewController::contents() const
{
    return {getSortedTags(),
            m_tagType,
            {m_filterString, listed(alwaysKey), listed(neverKey)},
            m_navigator.searcher().searchState()};
}

double KPCloudViewController::heightForAll() const
{
    XPCloudLayout layout = m_view->layoutForMeasuring();
    const KPCloudContents all = contents();
    layout.setItems(all.items(all.candidates().size()));
    return layout.requiredHeightToFitAllTags();
}

void KPCloudViewController::repopulateTagCloud()
{
    const bool shown = !hidden();
    m_title->setChecked(shown);
    m_title->setAccessibleDescription(qtTrId("KPCloudSectionTip"));
    m_view->setVisible(shown);
    const KPCloudContents all = contents();
    XPCloudLayout layout = m_view->layoutForMeasuring();
    if (shown)
        all.fill(layout, m_view->height());
    m_view->setItems(layout.drawnItems());
    m_countText = calculateDescriptionString(
        m_view->statusTemplates(), shown ? layout.drawnItems().size() : all.candidates().size(),
        all.candidates().size());
    m_description->setText(m_countText);
}

QString
KPCloudViewController::calculateDescriptionString(const XPCloudView::StatusTemplates &templates,
                                                  qsizetype shown, qsizetype total)
{
    const QLocale locale;
    if (total == 0)
        return qtTrId(templates.none);
    if (shown < total)
        return qtTrId(templates.some).arg(locale.toString(shown), locale.toString(total));
    return total == 1 ? qtTrId(templates.one) : qtTrId(templates.all).arg(locale.toString(total));
}

KPTagName *KPCloudViewController::tagOf(const XPCloudItem &item)
{
    return KPTagName::tagNameWithDisplayName(item.displayName, item.keyName);
}

bool KPCloudViewController::hasTag(const KPTagName *tag) const
{
    return KPTagClicks::isSelected(m_navigator.searcher().searchState(), tag);
}

// What is done with a word.

void KPCloudViewController::show(const KPSearchState::Ptr &state)
{
    m_navigator.setSearchStateAndUpdateUI(state, true);
}

void KPCloudViewController::cloudViewItemClicked(const XPCloudItem &item,
                                                 Qt::KeyboardModifiers modifiers)
{
    show(KPTagClicks::click(m_navigator.searcher().searchState(), tagOf(item),
                            modifiers.testFlag(Qt::AltModifier)));
}

bool KPCloudViewController::cloudViewAcceptsDrop(const XPCloudItem &item) const
{
    return tagOf(item)->tagType() == KPTagName::User;
}

void KPCloudViewController::cloudViewPerformDragOperation(const XPCloudItem &item,
                                                          const QStringList &paths)
{
    xpGuiThread.assertHere();
    KPDocServices::TagChange change;
    change.newTags = {tagOf(item)};
    change.filePaths = paths;
    change.confirmWhenChangingManyFiles = true;
    change.reportChangesOverView = m_view;
    KPDocServices::current().replaceOriginalTags(change);
}

QMimeData *KPCloudViewController::cloudViewMimeDataForItem(const XPCloudItem &item)
{
    return tagOf(item)->tagType() == KPTagName::User ? KPTagMime::mimeData({tagOf(item)}) : nullptr;
}

QString KPCloudViewController::cloudViewTipForItem(const XPCloudItem &item) const
{
    QString name = XPPath::printable(item.itemDisplayName(false));
    if (!UserDefaults::standard().boolValue(QStringLiteral("KPCloudShowFrequency")))
        return name;
    return qtTrId("KPCloudItemCount", static_cast<int>(item.count))
        .arg(name, QLocale().toString(static_cast<qint64>(item.count)));
}

void KPCloudViewController::cloudViewShowStatus(const QString &text)
{
    m_description->setText(text.isEmpty() ? m_countText : text);
}

QMenu *KPCloudViewController::cloudViewMenuForItem(const XPCloudItem &item)
{
    KPTagName *tag = tagOf(item);
    auto *menu = new QMenu(m_view);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto state = [this] { return m_navigator.searcher().searchState(); };
    menu->addAction(qtTrId("KPCloudShowWith"), this,
                    [=, this] { show(KPTagClicks::showWith(state(), tag)); });
    menu->addAction(qtTrId("KPCloudShowWithout"), this,
                    [=, this] { show(KPTagClicks::showWithout(state(), tag)); });
    if (hasTag(tag))
        menu->addAction(qtTrId("KPCloudClear"), this,
                        [=, this] { show(KPTagClicks::clear(state(), tag)); });
    KPTagBranchMenu::add(menu, tag, m_navigator);
    menu->addSeparator();
    menu->addAction(qtTrId("KPCloudCopyName"), this,
                    [tag] { QGuiApplication::clipboard()->setText(tag->displayName()); });
    if (KPTagEditing::current() && tag->tagType() == KPTagName::User) {
        menu->addAction(qtTrId("KPTagRenameMenu"), this,
                        [tag] { KPTagEditing::current()->showRenameDialogForTag(tag); });
        menu->addAction(qtTrId("KPTagDeleteMenu"), this,
                        [tag] { KPTagEditing::current()->showDeleteDialogForTag(tag); });
    }
    menu->addSeparator();
    for (const auto &[id, setting] : {std::pair{QT_TRID_NOOP("KPCloudAlwaysShow"), alwaysKey},
                                      std::pair{QT_TRID_NOOP("KPCloudNeverShow"), neverKey}}) {
        QAction *action = menu->addAction(qtTrId(id));
        action->setCheckable(true);
        action->setChecked(listed(setting).contains(tag));
        connect(action, &QAction::triggered, this, [=, this, key = setting](bool on) {
            const QString &other = key == alwaysKey ? neverKey : alwaysKey;
            list(tag, key, on);
            if (on)
                list(tag, other, false);
        });
    }
    return menu;
}
