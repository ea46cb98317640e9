// What a click on a tag offers, wherever the tag stands.
#include "KPController.h"
#include "KPEditHistory.h"
#include "KPSearcher.h"
#include "KPTagBranchMenu.h"
#include "KPTagClicks.h"
#include "KPTagEditing.h"
#include "XPPath.h"

#include <QClipboard>
#include <QGuiApplication>

static const QString typePrefix = QStringLiteral("uti:");

void KPController::tagButtonShow(KPTagName *tag, bool isWanted)
{
    const KPSearchState::Ptr state = m_searcher->searchState();
    m_searcher->setSearchStateAddToHistoryIfChanged(
        isWanted ? KPTagClicks::showWith(state, tag) : KPTagClicks::showWithout(state, tag));
}

void KPController::removeTagFromSelected(KPTagName *tag)
{
    m_edits->edit({pathsOfSelection(), KPFileEdit::Tags{{tag->displayName()}, {}}, {}});
}

void KPController::showTagMenu(KPTagName *tag, const QPoint &globalPosition)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [this, menu](const QString &text, std::function<void()> run) {
        connect(menu->addAction(text), &QAction::triggered, this, std::move(run));
    };
    const QString name = tag->displayName();
    const bool isType = tag->keyName().startsWith(typePrefix);
    QString shown = XPPath::printable(name);
    shown.replace(u'&', QStringLiteral("&&"));
    add(qtTrId("KPTagShowWith").arg(shown), [this, tag] { tagButtonShow(tag, true); });
    add(qtTrId("KPTagShowWithout").arg(shown), [this, tag] { tagButtonShow(tag, false); });
    add(qtTrId("KPTagSearch").arg(shown), [this, name] { doSearch(name, true, true); });
    KPTagBranchMenu::add(menu, tag, *this);
    menu->addSeparator();
    add(qtTrId("KPTagCopy"), [name] { QGuiApplication::clipboard()->setText(name); });
    if (isType) {
        add(qtTrId("KPTagCopyUTI"), [tag] {
            QGuiApplication::clipboard()->setText(tag->keyName().sliced(typePrefix.size()));
        });
    } else {
        add(qtTrId("KPTagRemoveFromSelected"), [this, tag] { removeTagFromSelected(tag); });
        menu->actions().last()->setEnabled(!pathsOfSelection().isEmpty());
        if (tag->tagType() == KPTagName::User) {
            menu->addSeparator();
            add(qtTrId("KPTagRenameMenu"),
                [this, tag] { m_tagEditing->showRenameDialogForTag(tag); });
            add(qtTrId("KPTagDeleteMenu"),
                [this, tag] { m_tagEditing->showDeleteDialogForTag(tag); });
        }
    }
    menu->popup(globalPosition);
}
