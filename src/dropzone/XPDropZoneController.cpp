#include "XPDropZoneController.h"

#include "KPRecentTagGroups.h"
#include "UserDefaults.h"
#include "XPDragWatch.h"
#include "XPDropZoneTagEditorController.h"
#include "XPFiledDocuments.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPRecentDestinations.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMimeData>
#include <QPointer>
#include <QScreen>

static const QString showKey = QStringLiteral("KPShowDropZone");
static const QString alwaysKey = QStringLiteral("KPShowDropZoneEvenWithoutFileDrag");
static const QString leftKey = QStringLiteral("KPDropZoneLeftEdge");
static const QString overlapKey = QStringLiteral("KPDropZoneOverlapWithScreen");
static const QString yKey = QStringLiteral("KPDropZoneY");

static constexpr int slideDuration = 140; // milliseconds
static constexpr int awayDelay = 1500;    // after a drag that may still be dropped

static XPDropZoneController *theZone = nullptr;

XPDropZoneDelegate::~XPDropZoneDelegate() = default;

static bool setting(const QString &key)
{
    return UserDefaults::standard().boolValue(key);
}

XPDropZoneController *XPDropZoneController::singleInstance()
{
    return theZone;
}

XPDropZoneController::XPDropZoneController(XPDropZoneDelegate *delegate) : m_delegate(delegate)
{
    Q_ASSERT_X(theZone == nullptr, "XPDropZoneController", "there is one already");
    theZone = this;
    const PropertyValue y = UserDefaults::standard().value(yKey);
    if (!y.isNull())
        m_y = y.doubleValue();
    if (XPDragWatch::isPossible()) {
        m_watch = std::make_unique<XPDragWatch>();
        connect(m_watch.get(), &XPDragWatch::began, this, &XPDropZoneController::dragBegan);
        connect(m_watch.get(), &XPDragWatch::ended, this, &XPDropZoneController::dragEnded);
        qGuiApp->installNativeEventFilter(this);
    }
    makeWindow();
    m_away.setSingleShot(true);
    m_away.setInterval(awayDelay);
    connect(&m_away, &QTimer::timeout, this, &XPDropZoneController::slideOffscreen);
    followSettings();
    followScreens();
    showAsWanted();
}

XPDropZoneController::~XPDropZoneController()
{
    if (theZone == this)
        theZone = nullptr;
}

// --- The window

void XPDropZoneController::makeWindow()
{
    if (isPanel())
        m_view.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint |
                              Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus);
    else
        m_view.setWindowFlags(Qt::Tool | Qt::WindowStaysOnTopHint);
    m_view.setAttribute(Qt::WA_ShowWithoutActivating);
    m_view.setAttribute(Qt::WA_QuitOnClose, false);
    m_view.setWindowTitle(qtTrId("KPDropZone"));
    m_view.setFixedSize(m_view.sizeHint());
    m_slide.setTargetObject(&m_view);
    m_slide.setPropertyName("pos");
    m_slide.setDuration(slideDuration);
    m_slide.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_slide, &QAbstractAnimation::finished, this, [this] {
        if (!m_slidOnscreen && !setting(alwaysKey))
            m_view.hide();
    });
    connect(&m_view, &XPDropZoneView::dragEntered, this, &XPDropZoneController::prepareForDrag);
    connect(&m_view, &XPDropZoneView::dragLeft, this, [this] {
        if (!m_watch || !m_watch->isDragging())
            m_away.start();
    });
    connect(&m_view, &XPDropZoneView::dropped, this, &XPDropZoneController::performDragOperation);
    connect(&m_view, &XPDropZoneView::clicked, this, [this] {
        if (m_delegate != nullptr)
            m_delegate->zoneClicked();
    });
    connect(&m_view, &XPDropZoneView::moved, this, [this](int dy) {
        m_y = geometry().y() + dy;
        reposition();
    });
}

// Those that lie beside the one where the program was started: an X display may have screens that
// do not, each of which begins at (0, 0).
static QList<QScreen *> sharedScreens()
{
    const QScreen *own = QGuiApplication::primaryScreen();
    const QList<QScreen *> beside = own ? own->virtualSiblings() : QList<QScreen *>();
    return beside.isEmpty() ? QGuiApplication::screens() : beside;
}

XPDropZoneGeometry XPDropZoneController::geometry() const
{
    QList<XPDropZoneGeometry::Screen> screens;
    for (const QScreen *screen : sharedScreens())
        screens.append({screen->geometry(), screen->availableGeometry()});
    return {screens, {setting(leftKey), setting(overlapKey), m_y}};
}

void XPDropZoneController::followSettings()
{
    for (const QString &key : {showKey, alwaysKey, leftKey, overlapKey})
        m_observations.push_back(UserDefaults::standard().addObserver(
            QStringLiteral("values.") + key, [this](const PropertyValue &) {
                showAsWanted();
                reposition();
            }));
}

// Screens that come and go, change their size or density, or get a panel of the desktop's.
void XPDropZoneController::followScreens()
{
    const auto follow = [this](QScreen *screen) {
        for (const auto change : {&QScreen::geometryChanged, &QScreen::availableGeometryChanged})
            connect(screen, change, this, &XPDropZoneController::reposition);
    };
    for (QScreen *screen : QGuiApplication::screens())
        follow(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this, follow](QScreen *screen) {
        follow(screen);
        reposition();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &XPDropZoneController::reposition);
}

void XPDropZoneController::reposition()
{
    if (!isPanel() || QGuiApplication::screens().isEmpty())
        return;
    m_slide.stop();
    const XPDropZoneGeometry place = geometry();
    m_view.setEdge(setting(leftKey) ? Qt::LeftEdge : Qt::RightEdge);
    m_view.move((m_slidOnscreen ? place.onscreen() : place.offscreen()).topLeft());
}

bool XPDropZoneController::isWanted() const
{
    const QList<QScreen *> screens = sharedScreens();
    return setting(showKey) && !screens.isEmpty() &&
           (!isPanel() || !XPFrontWindow::isFullScreen(*screens[geometry().screen()]));
}

// Between drags.
void XPDropZoneController::showAsWanted()
{
    if (m_slidOnscreen && setting(showKey))
        return;
    m_slidOnscreen = m_slidOnscreen && setting(showKey);
    const bool isShown = isWanted() && setting(alwaysKey);
    if (isShown) {
        setChoices();
        reposition();
    }
    m_view.setVisible(isShown);
}

bool XPDropZoneController::nativeEventFilter(const QByteArray &type, void *message, qintptr *)
{
    // Another window is in front, or fills the screen now.
    if (type == "xcb_generic_event_t" && setting(alwaysKey) &&
        XPFrontWindow::isChangeNotice(message))
        QTimer::singleShot(0, this, &XPDropZoneController::showAsWanted);
    return false;
}

void XPDropZoneController::writeOutStateWhenQuiting()
{
    if (m_y)
        UserDefaults::standard().setValue(yKey, PropertyValue::real(geometry().y()));
}

// --- Sliding

void XPDropZoneController::slideTo(const QRect &frame)
{
    m_slide.stop();
    m_slide.setStartValue(m_view.pos());
    m_slide.setEndValue(frame.topLeft());
    m_slide.start();
}

void XPDropZoneController::slideOnscreen()
{
    m_away.stop();
    if (m_slidOnscreen)
        return;
    if (!m_view.isVisible())
        reposition(); // settings and screens may be others than the last time
    m_slidOnscreen = true;
    if (isPanel())
        slideTo(geometry().onscreen());
    m_view.show();
    m_view.raise();
}

void XPDropZoneController::slideOffscreen()
{
    m_away.stop();
    m_dragWasToDropZone = false;
    m_view.setStatus({});
    if (!m_slidOnscreen)
        return;
    m_slidOnscreen = false;
    if (isPanel())
        slideTo(geometry().offscreen());
    else
        m_view.setVisible(setting(alwaysKey));
}

// --- Drags

void XPDropZoneController::setChoices()
{
    // Without a managed folder documents go to the desktop.
    const QString today = XPFiledDocuments::usesFiledDocuments()
                              ? XPFiledDocuments::datedFolder(QDateTime::currentDateTime())
                              : XPPath::printable(XPPath::fileName(XPFolders::desktop()));
    m_view.setChoices(
        {XPRecentDestinations::paths(), KPRecentTagGroups::groups(), today, m_view.sizeHint()});
}

void XPDropZoneController::dragBegan()
{
    if (!isWanted())
        return;
    setChoices();
    slideOnscreen();
}

// What was let go over the zone comes as a drop in a moment.
void XPDropZoneController::dragEnded()
{
    if (m_dragWasToDropZone || !m_slidOnscreen)
        return;
    if (m_view.frameGeometry().contains(QCursor::pos()))
        m_away.start();
    else
        slideOffscreen();
}

void XPDropZoneController::prepareForDrag()
{
    if (m_delegate != nullptr)
        m_delegate->prepareForDrag();
    slideOnscreen();
}

void XPDropZoneController::performDragOperation(const QMimeData *data,
                                                const XPDropZoneDestination &destination)
{
    m_dragWasToDropZone = true;
    const auto isEditing = [this] {
        return m_tagEditorController && m_tagEditorController->isVisible();
    };
    // Before a question, or the editor, comes to the front. While the editor is there it is in
    // front, and the program of the first drop stays the one to go back to.
    if (auto front = XPFrontWindow::ofAnotherProgram(); front || !isEditing())
        m_appToActivateWhenInlineEditorCloses = front;
    m_away.stop();
    m_view.setStatus(qtTrId("KPDropZoneFiling"));
    const QPointer<XPDropZoneController> self = this; // the program may end meanwhile
    const bool isTaken =
        m_delegate != nullptr && m_delegate->performDragOperation(data, destination);
    if (!self)
        return;
    if (!isTaken)
        slideOffscreen();
    else if (!isEditing())
        m_away.start(); // it comes back with the documents
}

// --- Tags

void XPDropZoneController::editTagsForFilePaths(const QStringList &paths)
{
    if (paths.isEmpty())
        return;
    m_dragWasToDropZone = false;
    slideOnscreen();
    m_view.setStatus(qtTrId("KPDropZoneFiled", static_cast<int>(paths.size())));
    if (!m_tagEditorController) {
        m_tagEditorController = std::make_unique<XPDropZoneTagEditorController>(
            [this](const QSize &size) { return geometry().beside(size); });
        connect(m_tagEditorController.get(), &XPDropZoneTagEditorController::tagEditorDidGoAway,
                this, &XPDropZoneController::tagEditorDidGoAway);
    }
    m_tagEditorController->editTagsForFilePaths(paths);
}

void XPDropZoneController::tagEditorDidGoAway()
{
    if (const auto front = std::exchange(m_appToActivateWhenInlineEditorCloses, {}))
        front->activate();
    slideOffscreen();
}
