#pragma once

#include <QLayout>
#include <QList>

// Lines of widgets that wrap like words; the last one takes what is left of its line, if it
// expands. Threads: main. Owns its items.
class XPFlowLayout : public QLayout
{
public:
    explicit XPFlowLayout(QWidget *parent, int spacing = 4);
    ~XPFlowLayout() override;

    void insertWidget(int index, QWidget *widget);

    void addItem(QLayoutItem *item) override { m_items.append(item); }
    int count() const override { return static_cast<int>(m_items.size()); }
    QLayoutItem *itemAt(int index) const override { return m_items.value(index); }
    QLayoutItem *takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override { return minimumSize(); }
    QSize minimumSize() const override;
    void setGeometry(const QRect &rect) override;

private:
    // Places the items (when `move`) and returns the height that they take.
    int arrange(const QRect &rect, bool move) const;

    QList<QLayoutItem *> m_items;
};
