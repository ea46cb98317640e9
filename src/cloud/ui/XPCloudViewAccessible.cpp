#include "XPCloudViewAccessible.h"

#include "XPCloudView.h"
#include "XPPath.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

namespace {

// One word. It is found again by its key: places change.
class Word : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    Word(XPCloudView *view, QString key) : m_view(view), m_key(std::move(key)) {}

    bool isValid() const override { return place() >= 0; }
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
        const qsizetype at = place();
        if (at < 0)
            return {};
        if (kind == QAccessible::Name)
            return XPPath::printable(XPCloudView::itemDisplayName(m_view->drawnItems()[at], false));
        return kind == QAccessible::Description ? m_view->describe(at) : QString();
    }
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override
    {
        const qsizetype at = place();
        if (at < 0)
            return {};
        const QRect drawn = m_view->pointToItemRect(at).toAlignedRect();
        return {m_view->mapToGlobal(drawn.topLeft()), drawn.size()};
    }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        const qsizetype at = place();
        state.invalid = at < 0;
        if (at < 0)
            return state;
        state.selectable = true;
        state.focusable = true;
        state.selected = XPCloudView::itemIsSelected(m_view->drawnItems()[at]);
        state.focused = m_view->hasFocus() && m_view->focusedItem() == at;
        state.invisible = !m_view->isVisible();
        return state;
    }
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface
                   ? static_cast<QAccessibleActionInterface *>(this)
                   : nullptr;
    }
    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString &name) override
    {
        const qsizetype at = place();
        if (at < 0)
            return;
        if (name == pressAction()) {
            m_view->click(at, Qt::NoModifier);
        } else if (name == setFocusAction()) {
            m_view->setFocus();
            m_view->focusItem(at);
        }
    }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    qsizetype place() const { return m_view ? m_view->itemWithKey(m_key) : -1; }

    QPointer<XPCloudView> m_view;
    const QString m_key;
};

class Cloud : public QAccessibleWidget
{
public:
    explicit Cloud(XPCloudView *view) : QAccessibleWidget(view, QAccessible::List) {}
    ~Cloud() override { forget(); }

    int childCount() const override { return static_cast<int>(view()->drawnItems().size()); }
    QAccessibleInterface *child(int at) const override
    {
        if (at < 0 || at >= childCount())
            return nullptr;
        const QString key = XPCloudView::itemKeyName(view()->drawnItems()[at]);
        if (const auto known = m_words.constFind(key); known != m_words.constEnd())
            return QAccessible::accessibleInterface(*known);
        auto *word = new Word(view(), key);
        m_words.insert(key, QAccessible::registerAccessibleInterface(word));
        return word;
    }
    QAccessibleInterface *childAt(int x, int y) const override
    {
        const auto at = view()->pointToItem(view()->mapFromGlobal(QPoint(x, y)));
        return at ? child(static_cast<int>(*at)) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *wanted) const override
    {
        for (auto each = m_words.begin(); each != m_words.end(); ++each) {
            if (QAccessible::accessibleInterface(*each) == wanted)
                return static_cast<int>(view()->itemWithKey(each.key()));
        }
        return -1;
    }
    QAccessibleInterface *focusChild() const override
    {
        return view()->hasFocus() ? child(static_cast<int>(view()->focusedItem())) : nullptr;
    }
    void forget()
    {
        for (const QAccessible::Id id : std::as_const(m_words))
            QAccessible::deleteAccessibleInterface(id);
        m_words.clear();
    }

private:
    XPCloudView *view() const { return static_cast<XPCloudView *>(widget()); }

    mutable QHash<QString, QAccessible::Id> m_words;
};

QAccessibleInterface *make(const QString &, QObject *object)
{
    auto *view = qobject_cast<XPCloudView *>(object);
    return view ? new Cloud(view) : nullptr;
}

} // namespace

void XPCloudViewAccessible::install()
{
    static const bool isInstalled = (QAccessible::installFactory(make), true);
    Q_UNUSED(isInstalled)
}

void XPCloudViewAccessible::tellFocused(XPCloudView &view, int item)
{
    if (!QAccessible::isActive() || !view.hasFocus())
        return;
    QAccessibleEvent event(&view, QAccessible::Focus);
    event.setChild(item);
    QAccessible::updateAccessibility(&event);
}

void XPCloudViewAccessible::tellItems(XPCloudView &view)
{
    if (!QAccessible::isActive())
        return;
    if (auto *cloud = dynamic_cast<Cloud *>(QAccessible::queryAccessibleInterface(&view)))
        cloud->forget();
    QAccessibleEvent event(&view, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}
