#include "XPCloudViewAccessible.h"

#include "XPAccessibleItems.h"
#include "XPCloudView.h"
#include "XPPath.h"

#include <QAccessibleWidget>

namespace {

// One word. It is found again by its key: places change.
class Word : public XPAccessibleItem
{
public:
    Word(XPCloudView *view, QString key) : XPAccessibleItem(view), m_key(std::move(key)) {}

    bool isValid() const override { return place() >= 0; }
    QString text(QAccessible::Text kind) const override
    {
        const qsizetype at = place();
        if (at < 0)
            return {};
        if (kind == QAccessible::Name)
            return XPPath::printable(XPCloudView::itemDisplayName(view()->drawnItems()[at], false));
        return kind == QAccessible::Description ? view()->describe(at) : QString();
    }
    QRect rect() const override
    {
        const qsizetype at = place();
        if (at < 0)
            return {};
        const QRect drawn = view()->pointToItemRect(at).toAlignedRect();
        return {view()->mapToGlobal(drawn.topLeft()), drawn.size()};
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
        state.selected = XPCloudView::itemIsSelected(view()->drawnItems()[at]);
        state.focused = view()->hasFocus() && view()->focusedItem() == at;
        state.invisible = !view()->isVisible();
        return state;
    }
    void doAction(const QString &name) override
    {
        const qsizetype at = place();
        if (at < 0)
            return;
        if (name == pressAction()) {
            view()->click(at, Qt::NoModifier);
        } else if (name == setFocusAction()) {
            view()->setFocus();
            view()->focusItem(at);
        }
    }

private:
    XPCloudView *view() const { return static_cast<XPCloudView *>(widget()); }
    qsizetype place() const { return view() ? view()->itemWithKey(m_key) : -1; }

    const QString m_key;
};

class Cloud : public QAccessibleWidget
{
public:
    explicit Cloud(XPCloudView *view) : QAccessibleWidget(view, QAccessible::List) {}

    int childCount() const override { return static_cast<int>(view()->drawnItems().size()); }
    QAccessibleInterface *child(int at) const override
    {
        if (at < 0 || at >= childCount())
            return nullptr;
        const QString key = XPCloudView::itemKeyName(view()->drawnItems()[at]);
        return m_words.item(key, [&] { return new Word(view(), key); });
    }
    QAccessibleInterface *childAt(int x, int y) const override
    {
        const auto at = view()->pointToItem(view()->mapFromGlobal(QPoint(x, y)));
        return at ? child(static_cast<int>(*at)) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface *wanted) const override
    {
        const auto key = m_words.keyOf(wanted);
        return key ? static_cast<int>(view()->itemWithKey(*key)) : -1;
    }
    QAccessibleInterface *focusChild() const override
    {
        return view()->hasFocus() ? child(static_cast<int>(view()->focusedItem())) : nullptr;
    }
    void forget() { m_words.forget(); }

private:
    XPCloudView *view() const { return static_cast<XPCloudView *>(widget()); }

    mutable XPAccessibleItems<QString> m_words;
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

void XPCloudViewAccessible::tellItems(XPCloudView &view)
{
    if (!QAccessible::isActive())
        return;
    if (auto *cloud = dynamic_cast<Cloud *>(QAccessible::queryAccessibleInterface(&view)))
        cloud->forget();
    XPAccessible::tellReordered(view);
}
