#pragma once

#include "KPDocCellLayout.h"

#include <QStyledItemDelegate>

class KPLibraryModel;
class KPQuickLook;

// Draws one document of the grid: its picture or icon, name, tags and stars.
// Asks for nothing itself: pictures are drawn when the cache has them. Threads: main.
class KPDocDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    KPDocDelegate(const KPLibraryModel *model, const KPQuickLook *looks, QObject *parent);

    void setLayout(const KPDocCellLayout &layout) { m_layout = layout; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    // The name cut in its middle so that the extension stays readable.
    static QString elidedName(const QString &name, const QFontMetrics &metrics, int width);

private:
    void paintFrame(QPainter *painter, const QStyleOptionViewItem &option) const;
    void paintPicture(QPainter *painter, const QStyleOptionViewItem &option,
                      const QModelIndex &index) const;
    void paintText(QPainter *painter, const QStyleOptionViewItem &option,
                   const QModelIndex &index) const;

    const KPLibraryModel *m_model;
    const KPQuickLook *m_looks;
    KPDocCellLayout m_layout;
};
