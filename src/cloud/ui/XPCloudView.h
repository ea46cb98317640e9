#pragma once

#include "XPBestMatch.h"

#include <QWidget>
#include <optional>

class QMenu;
class QMimeData;
class XPCloudView;

// What a cloud asks of its controller. Threads: main.
class XPCloudViewDelegate
{
public:
    virtual ~XPCloudViewDelegate();

    virtual QString cloudViewFilterString() const = 0;
    virtual void cloudViewItemClicked(const XPCloudItem &item, Qt::KeyboardModifiers modifiers) = 0;
    // Whether these documents may be dropped on the item; then, that they were.
    virtual bool cloudViewAcceptsDrop(const XPCloudItem &item) const = 0;
    virtual void cloudViewPerformDragOperation(const XPCloudItem &item,
                                               const QStringList &paths) = 0;
    // Null: the item has none. Deletes itself.
    virtual QMenu *cloudViewMenuForItem(const XPCloudItem &item) = 0;
    virtual QMimeData *cloudViewMimeDataForItem(const XPCloudItem &item) = 0;
    virtual QString cloudViewTipForItem(const XPCloudItem &item) const = 0;
    // What is under the pointer or has the focus; empty: nothing.
    virtual void cloudViewShowStatus(const QString &text) = 0;
};

// A cloud of items to click on, whatever they look like: clicks, keys, drags and menus.
//
// Arrow keys walk from item to item, Enter and Space click. The status templates are ids of texts
// from which the controller makes its description. Threads: main. The delegate outlives it.
class XPCloudView : public QWidget
{
    Q_OBJECT

public:
    struct StatusTemplates
    {
        const char *none = "";
        const char *one = "";
        const char *some = ""; // %1 of %2
        const char *all = "";  // %1
    };

    explicit XPCloudView(XPCloudViewDelegate *delegate, QWidget *parent = nullptr);

    void setStatusTemplates(const StatusTemplates &templates) { m_templates = templates; }
    const StatusTemplates &statusTemplates() const { return m_templates; }

    void setBestMatch(const XPBestMatch &match);
    const XPBestMatch &bestMatch() const { return m_bestMatch; }

    // How an item reads.
    static QString itemDisplayName(const XPCloudItem &item, bool truncateIfLong)
    {
        return item.itemDisplayName(truncateIfLong);
    }
    static QString itemKeyName(const XPCloudItem &item) { return item.keyName; }
    static bool itemIsSelected(const XPCloudItem &item) { return item.clickRemoves; }
    static double itemCount(const XPCloudItem &item) { return item.count; }

    virtual const QList<XPCloudItem> &drawnItems() const = 0;
    virtual std::optional<qsizetype> pointToItem(QPointF point) const = 0;
    virtual QRectF pointToItemRect(qsizetype item) const = 0;

    // The item with the focus; -1: none.
    qsizetype focusedItem() const { return hasFocus() ? m_focused : -1; }
    qsizetype itemWithKey(const QString &keyName) const; // -1: none
    void focusItem(qsizetype item);
    void click(qsizetype item, Qt::KeyboardModifiers modifiers);
    QString describe(qsizetype item) const; // for assistive programs

protected:
    // Under the pointer while documents are dragged over the view.
    const std::optional<qsizetype> &dropTarget() const { return m_dropTarget; }
    const std::optional<qsizetype> &hoveredItem() const { return m_hovered; }
    void itemsChanged();

    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    bool event(QEvent *event) override;

private:
    void hover(std::optional<qsizetype> item);
    qsizetype itemBeside(int key) const;
    void startDrag(qsizetype item);

    XPCloudViewDelegate *m_delegate;
    StatusTemplates m_templates;
    XPBestMatch m_bestMatch;
    std::optional<qsizetype> m_clickedItemAtMouseDown;
    QPoint m_pressedAt;
    std::optional<qsizetype> m_hovered;
    std::optional<qsizetype> m_dropTarget;
    qsizetype m_focused = -1;
    QString m_focusedKey;
};
