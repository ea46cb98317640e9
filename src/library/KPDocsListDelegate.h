#pragma once

#include "KPLibraryColours.h"

#include <QStyledItemDelegate>

class KPLibraryModel;

// Draws the cells of the list: a flag, names cut in the middle, tags as chips, stars.
// Threads: main. The model is not owned.
class KPDocsListDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static constexpr int rowHeight = 28;
    static constexpr int padding = 8; // beside what a cell holds

    KPDocsListDelegate(const KPLibraryModel &model, QObject *parent);

    void setColours(const KPLibraryColours &colours) { m_colours = colours; }
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    // The stars that a click at `x` of a cell gives, 1 to 5.
    static int starsAt(int x);

private:
    const KPLibraryModel &m_model;
    KPLibraryColours m_colours;
};
