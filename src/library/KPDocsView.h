#pragma once

#include "KPDocPainter.h"
#include "KPDocsGeometry.h"
#include "KPSelection.h"

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QTimer>
#include <functional>

class KPArrangedDocs;
class KPDocsKeys;
class KPEmptyPlace;
class KPNameField;
class KPQuickLook;
class QMimeData;

// The scrolling grid of the documents found: pictures with up to three lines of text, in rows and
// columns or in groups that can be closed.
//
// Places are KPDocsGeometry's, what is selected is KPArrangedDocs', keys are KPDocsKeys'. Only what
// is in sight is drawn and asked for its picture, then the page after it. A document in sight
// stays there when the zoom, the room or the documents around it change.
// Units: the geometry's, scrolled by the value of the bar.
// Threads: main. Documents, pictures and keys are not owned.
class KPDocsView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    KPDocsView(KPArrangedDocs &docs, KPQuickLook &pictures, KPDocsKeys &keys,
               QWidget *parent = nullptr);
    ~KPDocsView() override;

    // --- Size of the pictures

    // A slider's value, 0 to 1.
    void setThumbnailWidthUnitless(double zoom);
    void setThumbnailWidth(double width);
    QSizeF thumbnailSize() const { return m_geometry.thumbnailSize(); }
    const KPDocsGeometry &geometryOfDocs() const { return m_geometry; }
    int numColumns() const { return m_geometry.numColumns(); }
    KPArrangedDocs &docs() const { return m_docs; }

    // --- What is shown

    // In groups, where the results have any.
    void setGrouped(bool isGrouped);
    // While this says yes nothing but the background is drawn.
    void setKeepsStill(std::function<bool()> keepsStill) { m_keepsStill = std::move(keepsStill); }
    KPEmptyPlace &emptyPlace() const { return *m_empty; }
    void scrollToRow(int row);
    // Asks the settings again.
    void updateSettings();

    // Edits the name of a row where it stands; false: it cannot.
    bool editName(int row);
    // What drags of these documents carry. The caller owns it.
    static QMimeData *mimeData(const QList<KPDoc *> &docs);
    // What another program drags, and could be a document.
    static bool takesDrop(const QMimeData *data, const QObject *source);
    QPixmap dragPicture(const KPDoc &doc, qsizetype count) const;

    // In the viewport.
    QRectF visibleRect(int row) const;
    int rowAt(const QPoint &point) const;   // -1: none
    int rowNear(const QPoint &point) const; // the same, between two as well
    QRectF pictureRect(int row) const;      // null: it has none yet

Q_SIGNALS:
    void openRequested();
    void zoomRequested(int steps); // by the wheel
    void contextMenuRequested(const QPoint &globalPosition);
    void renameRequested(KPDoc *doc, const QString &name);
    void dropped(const QMimeData *data, bool copies); // valid in the call only

protected:
    bool viewportEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    // A document and where it stands in the viewport, to put it there again.
    struct Held
    {
        KPDoc *doc = nullptr;
        double top = 0;
        bool isAtTop = false; // nothing was scrolled
    };
    Held held() const;
    void giveGroups();
    void updateScrollBar();
    void recalculateFrameBasedOnThumbnailSize(const Held &held);
    void takeArrangement();
    void askForPictures();
    void showPictures(const QList<KPDoc *> &docs);
    void updateRow(int row);
    QPointF toContents(const QPointF &point) const;
    int offset() const;

    void paintDocs(QPainter &painter, const QRectF &rect) const;
    void paintItem(QPainter &painter, qsizetype item) const;
    void paintHeader(QPainter &painter, int group, double top) const;
    void paintHeaders(QPainter &painter, const QRectF &rect) const;

    // A header that the pointer is on; -1: none. One that stays in sight too.
    int headerAt(const QPoint &point) const;
    void flipGroup(int group, bool all);
    void press(int row, Qt::KeyboardModifiers modifiers);
    void startBand(const QPoint &at, Qt::KeyboardModifiers modifiers);
    void moveBand(const QPoint &to);
    void endBand();
    QRectF band() const; // in the contents
    void startDrag(int row);
    void hover(int row);

    KPArrangedDocs &m_docs;
    KPQuickLook &m_pictures;
    KPDocsKeys &m_keys;
    KPDocPainter m_painter;
    KPDocsGeometry m_geometry;
    KPEmptyPlace *m_empty;
    KPNameField *m_nameField;
    std::function<bool()> m_keepsStill;
    double m_wantedWidth;
    bool m_isGrouped = false;
    QTimer m_asking; // what is in sight is asked for once a turn of the event loop
    Held m_top;      // kept in sight through the next arrangement
    int m_hovered = -1;

    // Between a press and its release.
    struct Press
    {
        QPoint at;
        int row = -1;
        bool selectsOnRelease = false; // a drag takes what was selected along
    };
    std::optional<Press> m_press;

    bool m_cameByKeyboard = false; // the focus
    bool m_isDragSelecting = false;
    struct Band
    {
        QPointF from; // in the contents
        QPoint to;    // in the viewport
        KPSelection before;
        bool extends = false;
    };
    Band m_band;
    QBasicTimer m_autoScroll;
};
