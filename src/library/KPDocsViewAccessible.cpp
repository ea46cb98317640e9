#include "KPDocsViewAccessible.h"

#include "KPArrangedDocs.h"
#include "KPDocsView.h"
#include "KPEmptyPlace.h"
#include "XPAccessibleItems.h"
#include "XPPath.h"

#include <QAccessibleWidget>
#include <QLocale>
#include <cmath>

namespace {

// One document. It is found again by its record: rows change.
class Item : public XPAccessibleItem
{
public:
    Item(KPDocsView *view, KPDoc *doc) : XPAccessibleItem(view), m_doc(doc) {}

    bool isValid() const override { return view() && row() >= 0; }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name && isValid() ? name() : QString();
    }
    QRect rect() const override
    {
        if (!isValid())
            return {};
        const QRect place = view()->visibleRect(row()).toAlignedRect();
        return {view()->viewport()->mapToGlobal(place.topLeft()), place.size()};
    }
    QAccessible::State state() const override;
    void doAction(const QString &name) override;

private:
    KPDocsView *view() const { return static_cast<KPDocsView *>(widget()); }
    int row() const { return view()->docs().rowOf(m_doc); }
    QString name() const;

    KPDoc *const m_doc; // for the process
};

class List : public QAccessibleWidget
{
public:
    explicit List(KPDocsView *view) : QAccessibleWidget(view, QAccessible::List) {}

    // Without documents: what is said in their place, and its button.
    int childCount() const override { return isEmpty() ? 1 : docs().count(); }
    QAccessibleInterface *child(int row) const override
    {
        if (row < 0 || row >= childCount())
            return nullptr;
        if (isEmpty())
            return QAccessible::queryAccessibleInterface(&view()->emptyPlace());
        KPDoc *doc = docs().at(row);
        return m_items.item(doc, [&] { return new Item(view(), doc); });
    }
    QAccessibleInterface *childAt(int x, int y) const override
    {
        if (isEmpty())
            return child(0);
        return child(view()->rowAt(view()->viewport()->mapFromGlobal(QPoint(x, y))));
    }
    int indexOfChild(const QAccessibleInterface *wanted) const override
    {
        if (isEmpty())
            return wanted == child(0) ? 0 : -1;
        const auto doc = m_items.keyOf(wanted);
        return doc ? docs().rowOf(*doc) : -1;
    }
    QAccessibleInterface *focusChild() const override
    {
        return view()->hasFocus() ? child(docs().selection().current()) : nullptr;
    }
    void forget() { m_items.forget(); }

private:
    KPDocsView *view() const { return static_cast<KPDocsView *>(widget()); }
    KPArrangedDocs &docs() const { return view()->docs(); }
    bool isEmpty() const { return docs().count() == 0 && view()->emptyPlace().isVisibleTo(view()); }

    mutable XPAccessibleItems<KPDoc *> m_items;
};

// "report.pdf, tags work, invoice, 4 stars, 3 of 120"
QString Item::name() const
{
    QStringList parts{XPPath::printable(m_doc->fsDisplayName())};
    QStringList tags;
    for (const KPTagName *tag : m_doc->tagNamesOfTypeUserEntered())
        tags.append(XPPath::printable(tag->displayName()));
    if (!tags.isEmpty())
        parts.append(qtTrId("KPAccessibleTags").arg(tags.join(QStringLiteral(", "))));
    if (const int stars = m_doc->starsToShow(); stars > 0)
        parts.append(qtTrId("KPStars", stars));
    if (m_doc->unreadableMetaData())
        parts.append(qtTrId("KPTagsUnreadable"));
    const QLocale locale;
    parts.append(qtTrId("KPAccessiblePosition")
                     .arg(locale.toString(row() + 1), locale.toString(view()->docs().count())));
    return parts.join(QStringLiteral(", "));
}

QAccessible::State Item::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    state.selectable = true;
    state.multiSelectable = true;
    state.focusable = true;
    state.selected = view()->docs().selection().isSelected(row());
    state.focused = view()->hasFocus() && view()->docs().selection().current() == row();
    state.offscreen = !QRectF(view()->viewport()->rect()).intersects(view()->visibleRect(row()));
    return state;
}

void Item::doAction(const QString &name)
{
    if (!isValid())
        return;
    view()->docs().selectRow(row());
    view()->scrollToRow(row());
    if (name == pressAction())
        Q_EMIT view()->openRequested();
    else
        view()->setFocus();
}

QAccessibleInterface *make(const QString &, QObject *object)
{
    auto *view = qobject_cast<KPDocsView *>(object);
    return view ? new List(view) : nullptr;
}

} // namespace

void KPDocsViewAccessible::install()
{
    static const bool isInstalled = (QAccessible::installFactory(make), true);
    Q_UNUSED(isInstalled)
}

void KPDocsViewAccessible::tellSelection(KPDocsView &view)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(&view, QAccessible::SelectionWithin);
    QAccessible::updateAccessibility(&event);
}

void KPDocsViewAccessible::tellArranged(KPDocsView &view)
{
    if (!QAccessible::isActive())
        return;
    if (auto *list = dynamic_cast<List *>(QAccessible::queryAccessibleInterface(&view)))
        list->forget();
    XPAccessible::tellReordered(view);
}
