#pragma once

#include "KPCommandTable.h"
#include "XPNotificationCenter.h"

#include <QObject>
#include <vector>

class KPDoc;
class KPDocsView;
class KPLoupe;
class KPQuickLook;

// The magnifier over the grid: follows the pointer while its key is held, or as long as the setting
// "KPShowLoupe" is on, and shows what lies under it in detail, or as a whole.
//
// Settings: "KPLoupeModifierKey" (flags of the key: 0x20000 Shift, 0x40000 Control, 0x80000 Option,
// 0x100000 Command), "KPLoupeShowEntireImage", and the width (points) and magnification with their
// least and largest. A magnification of 1 shows a picture's pixels and a page at the size of its
// paper, one for one point of the screen; a document is always shown larger than the grid has it.
// Threads: main. The grid and the pictures outlive it.
class KPLoupeController : public QObject
{
    Q_OBJECT

public:
    static constexpr double widthStep = 50;
    static constexpr double magnificationStep = 0.4;

    KPLoupeController(KPDocsView &grid, KPQuickLook &pictures, QObject *parent = nullptr);
    ~KPLoupeController() override;

    // Where the grid is not shown, nor is the loupe.
    void setGridShown(bool isShown);
    // Which modifier keys are held now.
    void checkFlagsForLoupeCondition(Qt::KeyboardModifiers modifiers);
    bool isShown() const;
    QList<KPCommand> commands();

    void showHideLoupeAction();
    void adjustLoupePixelSizeBy(double points);
    void adjustLoupeMagnificationBy(double magnification);

    // Which keys the flags name.
    static Qt::KeyboardModifiers modifiersOf(qint64 flags);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isWanted() const;
    void update();
    void hide();
    void showAt(const QPoint &point, int row);
    QSizeF naturalSize(const KPDoc &doc, const QSizeF &proportion) const;

    KPDocsView &m_grid;
    KPQuickLook &m_pictures;
    KPLoupe *m_loupe = nullptr; // the window's; made when first shown
    bool m_isGridShown = true;
    bool m_isKeyHeld = false;
    std::optional<QPoint> m_pointer; // over the grid
    KPDoc *m_doc = nullptr;          // that is looked at
    std::vector<XPObservation> m_observations;
};
