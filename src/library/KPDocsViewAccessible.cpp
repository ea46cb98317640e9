#include "KPDocsViewAccessible.h"

#include "KPArrangedDocs.h"
#include "KPDocsView.h"
#include "KPEmptyPlace.h"
#include "XPPath.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QLocale>
#include <cmath>

namespace {

class List;

// One document. It is found again by its record: rows change.
class Item : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    Item(KPDocsView *view, KPDoc *doc) : m_view(view), m_doc(doc) {}

    bool isValid() const override { return m_view && row() >= 0; }
    QObject *object() const override { return nullptr; }
    QAccessibleInterface *parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_view.data());
    }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name && isValid() ? name() : QString();
    }
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override
    {
        if (!isValid())
            return {};
        const QRect place = m_view->visibleRect(row()).toAlignedRect();
        return {m_view->viewport()->mapToGlobal(place.topLeft()), place.size()};
    }
    QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface
                   ? static_cast<QAccessibleActionInterface *>(this)
                   : nullptr;
    }
    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    int row() const { return m_view->docs().rowOf(m_doc); }
    QString name() const;

    QPointer<KPDocsView> m_view;
    KPDoc *const m_doc; // for the process
};

class List : public QAccessibleWidget
{
public:
    explicit List(KPDocsView *view) : QAccessibleWidget(view, QAccessible::List) {}
    ~List() override { forget(); }

    // Without documents: what is said in their place, and its button.
    int childCount() const override { return isEmpty() ? 1 : docs().count(); }
    QAccessibleInterface *child(int row) const override
    {
        if (row < 0 || row >= childCount())
            return nullptr;
        if (isEmpty())
            return QAccessible::queryAccessibleInterface(&view()->emptyPlace());
        KPDoc *doc = docs().at(row);
        if (const auto known = m_items.find(doc); known != m_items.end())
            return QAccessible::accessibleInterface(*known);
        auto *item = new Item(view(), doc);
        m_items.insert(doc, QAccessible::registerAccessibleInterface(item));
        return item;
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
        for (auto each = m_items.begin(); each != m_items.end(); ++each) {
            if (QAccessible::accessibleInterface(*each) == wanted)
                return docs().rowOf(each.key());
        }
        return -1;
    }
    QAccessibleInterface *focusChild() const override
    {
        return view()->hasFocus() ? child(docs().selection().current()) : nullptr;
    }
    void forget()
    {
        for (const QAccessible::Id id : std::as_const(m_items))
            QAccessible::deleteAccessibleInterface(id);
        m_items.clear();
    }

private:
    KPDocsView *view() const { return static_cast<KPDocsView *>(widget()); }
    KPArrangedDocs &docs() const { return view()->docs(); }
    bool isEmpty() const { return docs().count() == 0 && view()->emptyPlace().isVisibleTo(view()); }

    mutable QHash<KPDoc *, QAccessible::Id> m_items;
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
                     .arg(locale.toString(row() + 1), locale.toString(m_view->docs().count())));
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
    state.selected = m_view->docs().selection().isSelected(row());
    state.focused = m_view->hasFocus() && m_view->docs().selection().current() == row();
    state.offscreen = !QRectF(m_view->viewport()->rect()).intersects(m_view->visibleRect(row()));
    return state;
}

void Item::doAction(const QString &name)
{
    if (!isValid())
        return;
    m_view->docs().selectRow(row());
    m_view->scrollToRow(row());
    if (name == pressAction())
        Q_EMIT m_view->openRequested();
    else
        m_view->setFocus();
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

void KPDocsViewAccessible::tellCurrent(KPDocsView &view, int row)
{
    if (!QAccessible::isActive() || row < 0 || !view.hasFocus())
        return;
    QAccessibleEvent event(&view, QAccessible::Focus);
    event.setChild(row);
    QAccessible::updateAccessibility(&event);
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
    QAccessibleEvent event(&view, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}
