#pragma once

#include <QAccessible>
#include <QHash>
#include <QPointer>
#include <QWidget>
#include <optional>
#include <utility>

// What views that draw their items themselves tell assistive programs: a list with a child an item,
// which can be pressed and given the focus. A view's own classes say what an item is named and
// where it is. Threads: main.

// One item of a view.
class XPAccessibleItem : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    explicit XPAccessibleItem(QWidget *view) : m_view(view) {}

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
    void setText(QAccessible::Text, const QString &) override {}
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface
                   ? static_cast<QAccessibleActionInterface *>(this)
                   : nullptr;
    }
    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

protected:
    QWidget *widget() const { return m_view; } // null: it is gone

private:
    QPointer<QWidget> m_view;
};

// The items that somebody asked for, by what they are found again with: places change.
template <typename Key>
class XPAccessibleItems
{
public:
    XPAccessibleItems() = default;
    ~XPAccessibleItems() { forget(); }
    XPAccessibleItems(const XPAccessibleItems &) = delete;
    XPAccessibleItems &operator=(const XPAccessibleItems &) = delete;

    // `make` is called where it is not known yet.
    template <typename Make>
    QAccessibleInterface *item(const Key &key, Make make)
    {
        if (const auto known = m_items.constFind(key); known != m_items.cend())
            return QAccessible::accessibleInterface(*known);
        QAccessibleInterface *made = make();
        m_items.insert(key, QAccessible::registerAccessibleInterface(made));
        return made;
    }
    // Of an item that was asked for.
    std::optional<Key> keyOf(const QAccessibleInterface *wanted) const
    {
        for (auto each = m_items.begin(); each != m_items.end(); ++each) {
            if (QAccessible::accessibleInterface(*each) == wanted)
                return each.key();
        }
        return {};
    }
    void forget()
    {
        for (const QAccessible::Id id : std::as_const(m_items))
            QAccessible::deleteAccessibleInterface(id);
        m_items.clear();
    }

private:
    QHash<Key, QAccessible::Id> m_items;
};

namespace XPAccessible {

// Nothing where the view has not the focus, or nobody listens.
void tellFocused(QWidget &view, int item);
// Its items are others: whoever looked at them looks again.
void tellReordered(QWidget &view);

} // namespace XPAccessible
