#include "KPPreviewWindow.h"

#include "KPDocIcons.h"
#include "KPFactsView.h"
#include "KPIconButton.h"
#include "KPLook.h"
#include "KPPageTurner.h"
#include "KPPreviewPicture.h"
#include "KPPreviewSheet.h"
#include "KPPreviewText.h"
#include "KPWindowFrame.h"
#include "XPStarsEditor.h"
#include "XPTagsEditor.h"

#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QStackedWidget>
#include <QVBoxLayout>

static const QString frameKey = QStringLiteral("KPPreviewFrame");
static constexpr QSize usualSize{860, 720};
static constexpr int factsWidth = 480;
static constexpr double arrowStep = 80; // points that an arrow key moves a picture

static KPIconButton *button(const char *symbol, QString name, const QString &key)
{
    name.remove(u'&'); // of a menu
    auto *button = new KPIconButton;
    button->setIcon(KPDocIcons::symbol(QLatin1String(symbol)));
    button->setAccessibleName(name);
    button->setToolTip(key.isEmpty() ? name : QStringLiteral("%1 (%2)").arg(name, key));
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

KPPreviewWindow::KPPreviewWindow(KPQuickLook &pictures, QWidget *window)
    : QWidget(window, Qt::Window), m_stack(new QStackedWidget), m_picture(new KPPreviewPicture),
      m_wordsPage(new QWidget), m_heads(new KPFactsView), m_words(new KPPreviewText),
      m_factsPage(new QScrollArea), m_factsPicture(new QLabel), m_facts(new KPFactsView),
      m_sheet(new KPPreviewSheet(pictures)), m_header(new QWidget), m_name(new QLabel),
      m_position(new QLabel), m_turner(new KPPageTurner),
      m_previous(button("back", qtTrId("KPPreviousDocument"), QStringLiteral("←"))),
      m_next(button("forward", qtTrId("KPNextDocument"), QStringLiteral("→"))),
      m_zoomOut(button("zoom-out", qtTrId("KPZoomOut"), QStringLiteral("-"))),
      m_zoomIn(button("zoom-in", qtTrId("KPZoomIn"), QStringLiteral("+"))),
      m_sheetButton(button("grid", qtTrId("KPPreviewSheet"), {})),
      m_open(button("open", qtTrId("KPOpen"), {})),
      m_full(button("fullscreen", qtTrId("KPFullScreen"), QStringLiteral("F"))), m_note(new QLabel),
      m_footer(new QWidget), m_stars(new XPStarsEditor),
      m_tags(new XPTagsEditor(XPTagsEditor::Purpose::Edit))
{
    setObjectName(QStringLiteral("KPPreviewWindow"));
    setMinimumSize(360, 300);
    auto *words = new QVBoxLayout(m_wordsPage);
    words->setContentsMargins(0, 0, 0, 0);
    words->setSpacing(0);
    m_heads->setContentsMargins(24, 12, 24, 12);
    words->addWidget(m_heads);
    words->addWidget(m_words, 1);
    m_wordsPage->setFocusProxy(m_words);
    auto *facts = new QWidget;
    auto *middle = new QVBoxLayout(facts);
    middle->addStretch(1);
    m_factsPicture->setAlignment(Qt::AlignCenter);
    m_factsPicture->setAccessibleName(qtTrId("KPPictureOfDocument"));
    middle->addWidget(m_factsPicture);
    middle->addSpacing(16);
    m_facts->setFixedWidth(factsWidth);
    middle->addWidget(m_facts, 0, Qt::AlignHCenter);
    middle->addStretch(2);
    m_factsPage->setWidget(facts);
    m_factsPage->setWidgetResizable(true);
    m_factsPage->setFrameShape(QFrame::NoFrame);
    for (QWidget *page : {static_cast<QWidget *>(m_picture), m_wordsPage,
                          static_cast<QWidget *>(m_factsPage), static_cast<QWidget *>(m_sheet)})
        m_stack->addWidget(page);
    buildHeader();
    buildFooter();
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_header);
    column->addWidget(m_stack, 1);
    column->addWidget(m_footer);
    connectKeys();
    KPWindowFrame::restore(*this, frameKey, usualSize);
}

KPPreviewWindow::~KPPreviewWindow() = default;

void KPPreviewWindow::buildHeader()
{
    m_header->setFixedHeight(KPLook::toolBarHeight);
    m_name->setTextFormat(Qt::PlainText);
    m_name->setFont(KPLook::font(KPLook::Type::Title));
    m_name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_position->setTextFormat(Qt::PlainText);
    m_position->setFont(KPLook::font(KPLook::Type::Facts));
    m_position->setForegroundRole(QPalette::PlaceholderText);
    m_sheetButton->setCheckable(true);
    auto *row = new QHBoxLayout(m_header);
    row->setContentsMargins(12, 0, 12, 0);
    row->setSpacing(4);
    row->addWidget(m_previous);
    row->addWidget(m_next);
    row->addSpacing(8);
    row->addWidget(m_name, 1);
    row->addWidget(m_position);
    row->addSpacing(8);
    row->addWidget(m_turner);
    for (KPIconButton *each : {m_zoomOut, m_zoomIn, m_sheetButton, m_open, m_full})
        row->addWidget(each);
}

void KPPreviewWindow::buildFooter()
{
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->setForegroundRole(QPalette::PlaceholderText);
    m_note->setFont(KPLook::font(KPLook::Type::Facts));
    m_tags->setHint(qtTrId("KPTagsHint"), qtTrId("KPTags"));
    auto *row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(m_stars, 0, Qt::AlignTop);
    row->addWidget(m_tags, 1);
    auto *column = new QVBoxLayout(m_footer);
    column->setContentsMargins(12, 8, 12, 8);
    column->setSpacing(4);
    column->addWidget(m_note);
    column->addLayout(row);
}

void KPPreviewWindow::connectKeys()
{
    connect(m_previous, &QAbstractButton::clicked, this, [this] { Q_EMIT stepRequested(-1); });
    connect(m_next, &QAbstractButton::clicked, this, [this] { Q_EMIT stepRequested(1); });
    connect(m_zoomOut, &QAbstractButton::clicked, this, [this] { zoom(false); });
    connect(m_zoomIn, &QAbstractButton::clicked, this, [this] { zoom(true); });
    connect(m_sheetButton, &QAbstractButton::clicked, this, &KPPreviewWindow::sheetRequested);
    connect(m_open, &QAbstractButton::clicked, this, &KPPreviewWindow::openRequested);
    connect(m_full, &QAbstractButton::clicked, this, &KPPreviewWindow::toggleFullScreen);
    connect(m_picture, &KPPreviewPicture::turnRequested, m_turner, &KPPageTurner::turnBy);
    connect(m_sheet, &KPPreviewSheet::opened, this, [this] { Q_EMIT sheetRequested(false); });
    connect(m_sheet, &KPPreviewSheet::keyPressed, this,
            [this](const QKeyEvent &event, bool *isTaken) { *isTaken = handleKey(event); });
    connect(m_stars, &XPStarsEditor::rated, this, &KPPreviewWindow::ratingRequested);
    connect(m_tags, &XPTagsEditor::left, this, [this] { view()->setFocus(); });
    for (QWidget *child : m_words->findChildren<QWidget *>())
        child->installEventFilter(this);
    m_factsPage->installEventFilter(this);
}

QWidget *KPPreviewWindow::view() const
{
    return m_stack->currentWidget();
}

KPPreviewWindow::Shows KPPreviewWindow::shows() const
{
    return static_cast<Shows>(m_stack->currentIndex());
}

void KPPreviewWindow::setShows(Shows shows)
{
    const bool isEdited = m_tags->isAncestorOf(focusWidget());
    m_stack->setCurrentIndex(static_cast<int>(shows));
    const bool zooms = shows == Shows::Picture || shows == Shows::Words;
    m_zoomIn->setEnabled(zooms);
    m_zoomOut->setEnabled(zooms);
    m_sheetButton->setChecked(shows == Shows::Sheet);
    if (!isEdited)
        view()->setFocus();
}

void KPPreviewWindow::setDocument(const QString &name, const QString &position, bool hasSheet)
{
    m_fullName = name;
    setWindowTitle(name);
    m_name->setToolTip(QStringLiteral("<p>%1</p>").arg(name.toHtmlEscaped()));
    const int room = std::max(80, m_name->width());
    m_name->setText(m_name->fontMetrics().elidedText(name, Qt::ElideMiddle, room));
    m_position->setText(position);
    m_sheetButton->setVisible(hasSheet);
}

void KPPreviewWindow::setFacts(const QList<KPDocumentFacts::Fact> &facts, const QPixmap &picture)
{
    m_heads->setFacts(facts);
    m_heads->setVisible(!facts.isEmpty());
    m_facts->setFacts(facts);
    m_factsPicture->setPixmap(picture);
}

void KPPreviewWindow::setNote(const QString &note)
{
    m_note->setText(note);
    m_note->setVisible(!note.isEmpty());
}

void KPPreviewWindow::setCanEdit(bool canEdit)
{
    m_stars->setEnabled(canEdit);
    m_tags->setEnabled(canEdit);
}

// --- Keys

bool KPPreviewWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && handleKey(*static_cast<QKeyEvent *>(event)))
        return true;
    return QWidget::eventFilter(watched, event);
}

void KPPreviewWindow::keyPressEvent(QKeyEvent *event)
{
    if (!handleKey(*event))
        QWidget::keyPressEvent(event);
}

// What an arrow does depends on what is seen: it moves within it, or goes on to another document.
bool KPPreviewWindow::handleArrow(int key)
{
    const bool isBack = key == Qt::Key_Left || key == Qt::Key_Up;
    const bool isSideways = key == Qt::Key_Left || key == Qt::Key_Right;
    if (shows() == Shows::Sheet || (shows() == Shows::Words && !isSideways))
        return false;
    if (shows() == Shows::Picture && !m_picture->isFitted()) {
        const double step = isBack ? -arrowStep : arrowStep;
        m_picture->moveBy(isSideways ? QPointF(step, 0) : QPointF(0, step));
        return true;
    }
    Q_EMIT stepRequested(isBack ? -1 : 1);
    return true;
}

bool KPPreviewWindow::handleZoom(int key)
{
    if (key == Qt::Key_Plus || key == Qt::Key_Equal || key == Qt::Key_Minus)
        zoom(key != Qt::Key_Minus);
    else if (key == Qt::Key_0 && shows() == Shows::Picture)
        m_picture->fit();
    else if (key == Qt::Key_1 && shows() == Shows::Picture)
        m_picture->showPixels(m_picture->rect().center());
    else
        return false;
    return true;
}

bool KPPreviewWindow::handleKey(const QKeyEvent &event)
{
    const auto modifiers = event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
    const int key = event.key();
    if (modifiers == Qt::ControlModifier && key == Qt::Key_T) {
        m_tags->focusEntry();
        return true;
    }
    if (modifiers == Qt::AltModifier && key >= Qt::Key_0 && key <= Qt::Key_5) {
        Q_EMIT ratingRequested(key - Qt::Key_0);
        return true;
    }
    if (key == Qt::Key_W && (!modifiers || modifiers == Qt::ControlModifier)) {
        close();
        return true;
    }
    if (modifiers)
        return modifiers == Qt::ControlModifier && handleZoom(key);
    switch (key) {
    case Qt::Key_Escape:
        isFullScreen() ? toggleFullScreen() : static_cast<void>(close());
        return true;
    case Qt::Key_Space:
        close();
        return true;
    case Qt::Key_F:
    case Qt::Key_F11:
        toggleFullScreen();
        return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        return handleArrow(key);
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        if (shows() != Shows::Picture)
            return false;
        m_turner->turnBy(key == Qt::Key_PageUp ? -1 : 1);
        return true;
    case Qt::Key_Home:
    case Qt::Key_End:
        if (shows() != Shows::Picture)
            return false;
        m_turner->turnTo(key == Qt::Key_Home ? 1 : m_turner->pages());
        return true;
    default:
        return handleZoom(key);
    }
}

void KPPreviewWindow::zoom(bool isLarger)
{
    if (shows() == Shows::Picture)
        m_picture->zoomBy(isLarger ? KPPreviewPicture::zoomStep : 1 / KPPreviewPicture::zoomStep);
    else if (shows() == Shows::Words)
        m_words->zoomBy(isLarger ? 1 : -1);
}

void KPPreviewWindow::toggleFullScreen()
{
    setWindowState(windowState() ^ Qt::WindowFullScreen);
    const bool isFull = windowState() & Qt::WindowFullScreen;
    m_footer->setVisible(!isFull);
}

void KPPreviewWindow::closeEvent(QCloseEvent *event)
{
    if (isFullScreen())
        toggleFullScreen();
    KPWindowFrame::save(*this, frameKey);
    QWidget::closeEvent(event);
    Q_EMIT closed();
}
