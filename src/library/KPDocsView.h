#pragma once

#include "KPDocCellLayout.h"

#include <QListView>
#include <QTimer>

class KPDoc;
class KPDocDelegate;
class KPLibraryModel;
class KPQuickLook;
class QToolButton;

// The documents as a grid of pictures, for selecting, opening, rating and dragging out.
//
// Rows are laid out in a grid of equal cells that share the width (KPDocCellLayout); only what is
// in sight is drawn and asked for its looks, then the page after it. Names typed go to the next
// document that begins so; the digits 0 to 5 rate. Threads: main. Model and looks are not owned.
class KPDocsView : public QListView
{
    Q_OBJECT

public:
    KPDocsView(KPLibraryModel *model, KPQuickLook *looks, QWidget *parent = nullptr);

    // 0 to 1, the setting "KPThumbnailSize".
    double zoom() const { return m_zoom; }
    void setZoom(double zoom);

    // In the order shown.
    QStringList selectedPaths() const;
    qsizetype selectedCount() const; // by ranges: cheap for any selection

    // Shown in the middle while there is no document; with a button for what would help.
    void setEmptyText(const QString &title, const QString &hint, QAction *remedy = nullptr);

Q_SIGNALS:
    void openRequested();
    void ratingTyped(int stars);
    void zoomRequested(int steps); // by the wheel
    void selectionMoved();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void startDrag(Qt::DropActions supported) override;
    void scrollContentsBy(int dx, int dy) override;
    void updateGeometries() override;
    void selectionChanged(const QItemSelection &selected,
                          const QItemSelection &deselected) override;

private:
    void layOut();
    void askForLooks();
    void showLooks(const QList<KPDoc *> &docs);
    struct EmptyLayout;
    EmptyLayout emptyLayout() const;
    void paintEmpty(QPainter *painter) const;
    void placeRemedy();
    QPixmap dragPicture(const KPDoc &doc, qsizetype count) const;

    KPLibraryModel *m_model;
    KPQuickLook *m_looks;
    KPDocDelegate *m_delegate;
    double m_zoom = 0.2;
    KPDocCellLayout m_layout;
    QTimer m_asking; // what is in sight is asked for once per turn of the event loop
    QString m_emptyTitle;
    QString m_emptyHint;
    QToolButton *m_remedy;
};
