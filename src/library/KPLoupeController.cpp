#include "KPLoupeController.h"

#include "KPArrangedDocs.h"
#include "KPDocMetaData.h"
#include "KPDocsView.h"
#include "KPLoupe.h"
#include "KPQuickLook.h"
#include "UserDefaults.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

using Menu = KPCommandMenu;

static const QString shownKey = QStringLiteral("KPShowLoupe");
static const QString entireKey = QStringLiteral("KPLoupeShowEntireImage");
static const QString widthKey = QStringLiteral("KPLoupeWidth");
static const QString magnificationKey = QStringLiteral("KPLoupeMagnification");

// Of what the importer draws (ImportFrame::maximumPixels).
static constexpr int mostPixels = 4096;
static constexpr double paperSide = 1123; // points of the longer side of ISO 216 A4, 96 an inch
static constexpr double leastEnlarged = 1.5;

static double number(const QString &key)
{
    return UserDefaults::standard().doubleValue(key);
}

static double limited(double value, const char *least, const char *most)
{
    const double low = number(QLatin1String(least));
    return std::clamp(value, low, std::max(low, number(QLatin1String(most))));
}

static double width()
{
    return limited(number(widthKey), "KPLoupeMinimumWidth", "KPLoupeMaximumWidth");
}

static double magnification()
{
    return limited(number(magnificationKey), "KPLoupeMinimumMagnification",
                   "KPLoupeMaximumMagnification");
}

static bool showsEntireImage()
{
    return UserDefaults::standard().boolValue(entireKey);
}

KPLoupeController::KPLoupeController(KPDocsView &grid, KPQuickLook &pictures, QObject *parent)
    : QObject(parent), m_grid(grid), m_pictures(pictures)
{
    m_grid.viewport()->installEventFilter(this);
    connect(m_grid.verticalScrollBar(), &QScrollBar::valueChanged, this,
            &KPLoupeController::update);
    connect(&m_grid.docs(), &KPArrangedDocs::arranged, this, &KPLoupeController::update);
    connect(&m_pictures, &KPQuickLook::looksReady, this, [this](const QList<KPDoc *> &docs) {
        if (m_doc && docs.contains(m_doc))
            update();
    });
    for (const QString &key : {shownKey, entireKey, widthKey, magnificationKey})
        m_observations.push_back(UserDefaults::standard().addObserver(
            QStringLiteral("values.") + key, [this](const PropertyValue &) { update(); }));
}

KPLoupeController::~KPLoupeController() = default;

Qt::KeyboardModifiers KPLoupeController::modifiersOf(qint64 flags)
{
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ShiftModifier, flags & 0x20000);
    modifiers.setFlag(Qt::MetaModifier, flags & 0x40000);
    modifiers.setFlag(Qt::AltModifier, flags & 0x80000);
    modifiers.setFlag(Qt::ControlModifier, flags & 0x100000);
    return modifiers;
}

void KPLoupeController::setGridShown(bool isShown)
{
    m_isGridShown = isShown;
    update();
}

// The key alone: with another one beside it, it is a shortcut.
void KPLoupeController::checkFlagsForLoupeCondition(Qt::KeyboardModifiers modifiers)
{
    const auto wanted =
        modifiersOf(UserDefaults::standard().integerValue(QStringLiteral("KPLoupeModifierKey")));
    modifiers &= Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    const bool isHeld = wanted != Qt::NoModifier && modifiers == wanted;
    if (std::exchange(m_isKeyHeld, isHeld) != isHeld)
        update();
}

bool KPLoupeController::isShown() const
{
    return m_loupe && m_loupe->isVisible();
}

bool KPLoupeController::isWanted() const
{
    return m_isGridShown && (m_isKeyHeld || UserDefaults::standard().boolValue(shownKey));
}

bool KPLoupeController::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseMove: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        m_pointer = mouse->buttons() == Qt::NoButton ? std::optional(mouse->pos()) : std::nullopt;
        update();
        break;
    }
    case QEvent::MouseButtonPress: // to select and to drag one must see where
    case QEvent::Leave:
        m_pointer.reset();
        update();
        break;
    case QEvent::ToolTip: // would stand right where one looks
        return isShown();
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

// --- What is seen

void KPLoupeController::hide()
{
    if (m_doc) {
        m_doc = nullptr;
        m_pictures.want(this, {});
    }
    if (m_loupe)
        m_loupe->hide();
}

void KPLoupeController::update()
{
    const int row = isWanted() && m_pointer ? m_grid.rowNear(*m_pointer) : -1;
    if (row < 0 || row >= m_grid.docs().count() || m_grid.docs().at(row)->isGone())
        hide();
    else
        showAt(*m_pointer, row);
}

// In points, at a magnification of 1.
QSizeF KPLoupeController::naturalSize(const KPDoc &doc, const QSizeF &proportion) const
{
    const auto held = [&](const char *key) {
        return KPDocMetaData::indexed(doc.filePath(), QLatin1String(key)).doubleValue();
    };
    static constexpr double pointsOfPaper = 96.0 / 72;
    double side = paperSide;
    if (const double pixels = std::max(held("kMDItemPixelWidth"), held("kMDItemPixelHeight"));
        pixels > 0)
        side = pixels;
    else if (const double paper = std::max(held("kMDItemPageWidth"), held("kMDItemPageHeight"));
             paper > 0)
        side = paper * pointsOfPaper;
    return proportion.scaled(side, side, Qt::KeepAspectRatio);
}

void KPLoupeController::showAt(const QPoint &point, int row)
{
    KPDoc &doc = *m_grid.docs().at(row);
    const QRectF small = m_grid.pictureRect(row);
    if (small.isEmpty()) {
        hide();
        return;
    }
    const double ratio = m_grid.devicePixelRatioF();
    KPLoupe::Sight sight;
    sight.isWhole = showsEntireImage();
    if (sight.isWhole) {
        sight.size = small.size().scaled(width(), width(), Qt::KeepAspectRatio);
    } else {
        sight.size = naturalSize(doc, small.size()) * magnification();
        if (sight.size.width() < small.width() * leastEnlarged)
            sight.size = small.size() * leastEnlarged;
        const auto part = [](double at, double start, double length) {
            return std::clamp((at - start) / length, 0.0, 1.0);
        };
        sight.point = {part(point.x(), small.left(), small.width()),
                       part(point.y(), small.top(), small.height())};
    }
    const double side = std::max(sight.size.width(), sight.size.height()) * ratio;
    m_doc = &doc;
    m_pictures.want(this, {{.doc = &doc,
                            .side = std::min(static_cast<int>(std::ceil(side)), mostPixels),
                            .page = 1,
                            .isHeld = true}});
    sight.picture = m_pictures.heldLook(doc).picture;
    if (!m_loupe || m_loupe->parentWidget() != m_grid.window()) {
        delete m_loupe;
        m_loupe = new KPLoupe(m_grid.window());
        connect(m_loupe, &QObject::destroyed, this, [this] { m_loupe = nullptr; });
    }
    m_loupe->show(sight, m_grid.viewport()->mapTo(m_grid.window(), point),
                  static_cast<int>(std::lround(width())));
}

// --- Commands

void KPLoupeController::showHideLoupeAction()
{
    UserDefaults &defaults = UserDefaults::standard();
    defaults.setValue(shownKey, PropertyValue::boolean(!defaults.boolValue(shownKey)));
}

void KPLoupeController::adjustLoupePixelSizeBy(double points)
{
    UserDefaults::standard().setValue(
        widthKey, PropertyValue::real(limited(number(widthKey) + points, "KPLoupeMinimumWidth",
                                              "KPLoupeMaximumWidth")));
}

void KPLoupeController::adjustLoupeMagnificationBy(double by)
{
    UserDefaults::standard().setValue(
        magnificationKey,
        PropertyValue::real(limited(number(magnificationKey) + by, "KPLoupeMinimumMagnification",
                                    "KPLoupeMaximumMagnification")));
}

QList<KPCommand> KPLoupeController::commands()
{
    const auto below = [this](const QString &key, const char *most, bool isDetail) {
        return [this, key, most, isDetail] {
            const bool can = number(key) < number(QLatin1String(most));
            return KPCommandState{.isEnabled =
                                      m_isGridShown && can && !(isDetail && showsEntireImage())};
        };
    };
    const auto above = [this](const QString &key, const char *least, bool isDetail) {
        return [this, key, least, isDetail] {
            const bool can = number(key) > number(QLatin1String(least));
            return KPCommandState{.isEnabled =
                                      m_isGridShown && can && !(isDetail && showsEntireImage())};
        };
    };
    return {
        {.id = QT_TRID_NOOP("KPShowLoupeMenuItem"),
         .menu = Menu::View,
         .shortcut = QKeySequence(Qt::Key_F7),
         .run = [this] { showHideLoupeAction(); },
         .state =
             [this] {
                 const bool isOn = UserDefaults::standard().boolValue(shownKey);
                 return KPCommandState{.isEnabled = m_isGridShown,
                                       .isChecked = isOn,
                                       .text = isOn ? QT_TRID_NOOP("KPHideLoupeMenuItem")
                                                    : QT_TRID_NOOP("KPShowLoupeMenuItem")};
             },
         .symbol = "loupe"},
        {.id = QT_TRID_NOOP("KPLoupeWider"),
         .menu = Menu::View,
         .run = [this] { adjustLoupePixelSizeBy(widthStep); },
         .state = below(widthKey, "KPLoupeMaximumWidth", false)},
        {.id = QT_TRID_NOOP("KPLoupeNarrower"),
         .menu = Menu::View,
         .run = [this] { adjustLoupePixelSizeBy(-widthStep); },
         .state = above(widthKey, "KPLoupeMinimumWidth", false)},
        {.id = QT_TRID_NOOP("KPLoupeStronger"),
         .menu = Menu::View,
         .run = [this] { adjustLoupeMagnificationBy(magnificationStep); },
         .state = below(magnificationKey, "KPLoupeMaximumMagnification", true)},
        {.id = QT_TRID_NOOP("KPLoupeWeaker"),
         .menu = Menu::View,
         .run = [this] { adjustLoupeMagnificationBy(-magnificationStep); },
         .state = above(magnificationKey, "KPLoupeMinimumMagnification", true)},
        {.id = QT_TRID_NOOP("KPLoupeEntireImage"),
         .menu = Menu::View,
         .run =
             [] {
                 UserDefaults::standard().setValue(entireKey,
                                                   PropertyValue::boolean(!showsEntireImage()));
             },
         .state =
             [this] {
                 return KPCommandState{.isEnabled = m_isGridShown, .isChecked = showsEntireImage()};
             },
         .endsGroup = true},
    };
}
