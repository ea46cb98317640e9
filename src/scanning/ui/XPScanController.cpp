#include "XPScanController.h"

#include "KPDocIcons.h"
#include "KPMenuButton.h"
#include "KPWindowFrame.h"
#include "UserDefaults.h"
#include "XPPageLoader.h"
#include "XPPaperSizes.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPScanProfile.h"
#include "XPStarsEditor.h"
#include "XPTagsEditor.h"
#include "XPWrappedCheckBox.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QDockWidget>
#include <QFormLayout>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QSlider>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

static const QString frameKey = QStringLiteral("KPScanWindowFrame");

using Profile = XPScanProfile;

static constexpr int stripWidth = 148; // with the number beside the picture, and a scroll bar
static constexpr int sidebarWidth = 260;

XPScanController::XPScanController(Hooks hooks)
    : m_hooks(std::move(hooks)), m_loader(std::make_unique<XPPageLoader>())
{
    setWindowTitle(qtTrId("KPScanWindowTitle"));
    KPWindowFrame::restore(*this, frameKey, {980, 720});
    m_view = new XPScanImageView(this);
    auto *middle = new QWidget(this);
    auto *column = new QVBoxLayout(middle);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_view, 1);
    column->addWidget(buildButtons());
    setCentralWidget(middle);

    m_strip = new QListWidget(this);
    m_strip->setAccessibleName(qtTrId("KPScanPages"));
    m_strip->setIconSize(QSize(72, 96));
    m_strip->setDragDropMode(QAbstractItemView::InternalMove);
    m_strip->setDefaultDropAction(Qt::MoveAction);
    m_strip->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_strip->setWordWrap(true);
    auto *pages = new QDockWidget(qtTrId("KPScanPages"), this);
    pages->setObjectName(QStringLiteral("pages"));
    pages->setFeatures(QDockWidget::NoDockWidgetFeatures);
    pages->setTitleBarWidget(new QWidget(pages));
    pages->setWidget(m_strip);
    m_strip->setFixedWidth(stripWidth);
    addDockWidget(Qt::LeftDockWidgetArea, pages);

    auto *settings = new QDockWidget(qtTrId("KPScanSettings"), this);
    settings->setObjectName(QStringLiteral("settings"));
    settings->setFeatures(QDockWidget::NoDockWidgetFeatures);
    settings->setTitleBarWidget(new QWidget(settings));
    settings->setWidget(buildSettings());
    addDockWidget(Qt::RightDockWidgetArea, settings);
    buildToolbar();
    connectParts();
    showScanners();
    showStrip();
    if (hasPages())
        readTags();
    if (m_pages.error())
        m_note->setText(m_pages.error()->reason());
    m_device.findScanners();
}

XPScanController::~XPScanController()
{
    KPWindowFrame::save(*this, frameKey);
}

void XPScanController::buildToolbar()
{
    QToolBar *bar = addToolBar(qtTrId("KPScanTools"));
    bar->setObjectName(QStringLiteral("tools"));
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->setIconSize(QSize(16, 16)); // the grid of the icons
    const auto add = [&](const char *name, const char *label, const char *tip, const char *symbol,
                         const QKeySequence &shortcut) {
        QAction *action = bar->addAction(KPDocIcons::symbol(QLatin1String(symbol)), qtTrId(label));
        action->setObjectName(QLatin1String(name));
        action->setShortcut(shortcut);
        action->setToolTip(qtTrId(tip) + QStringLiteral(" (") +
                           shortcut.toString(QKeySequence::NativeText) + u')');
        return action;
    };
    m_rotate =
        add("ZLRotate", QT_TRID_NOOP("KPToolbarRotateLabel"),
            QT_TRID_NOOP("KPToolbarRotateTooltip"), "rotate", QKeySequence(Qt::CTRL | Qt::Key_R));
    m_crop = add("ZLCrop", QT_TRID_NOOP("KPToolbarCropLabel"), QT_TRID_NOOP("KPToolbarCropTooltip"),
                 "crop", QKeySequence(Qt::CTRL | Qt::Key_K));
    m_straighten = add("ZLStraighten", QT_TRID_NOOP("KPToolbarStraightenLabel"),
                       QT_TRID_NOOP("KPToolbarStraightenTooltip"), "straighten",
                       QKeySequence(Qt::CTRL | Qt::Key_L));
    m_contrastTool = add("ZLContrast", QT_TRID_NOOP("KPToolbarContrastLabel"),
                         QT_TRID_NOOP("KPToolbarContrastTooltip"), "contrast",
                         QKeySequence(Qt::CTRL | Qt::Key_U));
    for (QAction *tool : {m_crop, m_straighten, m_contrastTool})
        tool->setCheckable(true);
    bar->addSeparator();
    m_delete = bar->addAction(KPDocIcons::symbol(QStringLiteral("trash")), qtTrId("KPScanDelete"),
                              this, &XPScanController::deletePageAction);
    m_delete->setShortcut(QKeySequence::Delete);
    m_interleave =
        bar->addAction(KPDocIcons::symbol(QStringLiteral("sort")), qtTrId("KPScanInterleaveAction"),
                       this, [this] { m_pages.interleave(); });
    // Their names in the tool bar stay as wide as they are; what they would do is in the tip.
    QUndoStack &steps = m_pages.undoStack();
    QAction *undo = bar->addAction(KPDocIcons::symbol(QStringLiteral("undo")), qtTrId("KPScanUndo"),
                                   &steps, &QUndoStack::undo);
    undo->setShortcut(QKeySequence::Undo);
    undo->setEnabled(false);
    connect(&steps, &QUndoStack::canUndoChanged, undo, &QAction::setEnabled);
    connect(&steps, &QUndoStack::undoTextChanged, undo, &QAction::setToolTip);
    QAction *redo = bar->addAction(KPDocIcons::symbol(QStringLiteral("redo")), qtTrId("KPScanRedo"),
                                   &steps, &QUndoStack::redo);
    redo->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z));
    redo->setEnabled(false);
    connect(&steps, &QUndoStack::canRedoChanged, redo, &QAction::setEnabled);
    connect(&steps, &QUndoStack::redoTextChanged, redo, &QAction::setToolTip);
    connect(m_rotate, &QAction::triggered, this, &XPScanController::rotateAction);
    const auto toggle = [this](QAction *action, Tool tool) {
        connect(action, &QAction::triggered, this,
                [this, tool](bool on) { setTool(on ? tool : Tool::None); });
    };
    toggle(m_crop, Tool::Crop);
    toggle(m_straighten, Tool::Straighten);
    toggle(m_contrastTool, Tool::Contrast);
}

QWidget *XPScanController::buildSettings()
{
    auto *scroll = new QScrollArea(this); // with large letters it is higher than a screen
    scroll->setAccessibleName(qtTrId("KPScanSettings"));
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus); // what is in it has the focus
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto *side = new QWidget;
    scroll->setWidget(side);
    auto *form = new QFormLayout(side);
    form->setRowWrapPolicy(QFormLayout::WrapAllRows);
    form->setContentsMargins(16, 16, 16, 16);
    form->setVerticalSpacing(8);
    const auto row = [&](const char *label, QWidget *widget) {
        widget->setAccessibleName(qtTrId(label));
        form->addRow(qtTrId(label), widget);
    };
    row(QT_TRID_NOOP("KPScanProfile"), buildProfiles());
    m_scannerPopup = new QComboBox(side);
    m_scannerPopup->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    row(QT_TRID_NOOP("KPScanScanner"), m_scannerPopup);
    m_paperPopup = new QComboBox(side);
    row(QT_TRID_NOOP("KPScanPaper"), m_paperPopup);
    // The preferences have these settings too.
    const auto follow = [this](const QString &key,
                               const std::function<void(const PropertyValue &)> &show) {
        m_observations.push_back(
            UserDefaults::standard().addObserver(QStringLiteral("values.") + key, show));
        show(UserDefaults::standard().value(key));
    };
    m_mode = new QComboBox(side);
    m_mode->addItem(qtTrId("KPScanColour"), QStringLiteral("Color"));
    m_mode->addItem(qtTrId("KPScanGrey"), QStringLiteral("Gray"));
    m_mode->addItem(qtTrId("KPScanBlackAndWhite"), QStringLiteral("Lineart"));
    follow(Profile::modeKey, [this](const PropertyValue &mode) {
        m_mode->setCurrentIndex(std::max(0, m_mode->findData(mode.string())));
    });
    row(QT_TRID_NOOP("KPScanColours"), m_mode);
    m_resolution = new QComboBox(side);
    for (const int dpi : {150, 300, 400, 600})
        m_resolution->addItem(qtTrId("KPScanDotsPerInch").arg(dpi), dpi);
    follow(Profile::resolutionKey, [this](const PropertyValue &dpi) {
        m_resolution->setCurrentIndex(
            std::max(1, m_resolution->findData(static_cast<int>(dpi.integerValue()))));
    });
    row(QT_TRID_NOOP("KPScanResolution"), m_resolution);
    const auto box = [&](const char *text, const QString &key) {
        auto *check = new XPWrappedCheckBox(qtTrId(text), side);
        follow(key, [check](const PropertyValue &on) { check->setChecked(on.boolValue()); });
        connect(check, &QCheckBox::toggled, check, [key](bool on) {
            UserDefaults::standard().setValue(key, PropertyValue::boolean(on));
        });
        form->addRow(check);
        return check;
    };
    m_duplex = box(QT_TRID_NOOP("KPScanDuplex"), XPImageCaptureCoreDevice::duplexKey);
    m_cleanUp = box(QT_TRID_NOOP("KPScanCleanUp"), Profile::cleansKey);
    m_upright = box(QT_TRID_NOOP("KPScanTurnUpright"), Profile::turnsUprightKey);
    m_skipBlank = box(QT_TRID_NOOP("KPScanLeaveOutBlank"), Profile::leavesOutBlankKey);
    m_separate = box(QT_TRID_NOOP("KPScanSeparate"), Profile::separatesKey);
    m_text = box(QT_TRID_NOOP("KPScanRecogniseText"), Profile::recognisesTextKey);
    m_tags = new XPTagsEditor(XPTagsEditor::Purpose::Edit, side);
    m_tags->setHint(qtTrId("KPAddTag"), qtTrId("KPScanTags"));
    if (m_hooks.knownTags)
        m_tags->setSuggestions(m_hooks.knownTags);
    form->addRow(qtTrId("KPScanTags"), m_tags);
    m_stars = new XPStarsEditor(side);
    row(QT_TRID_NOOP("KPScanRating"), m_stars);
    // With large letters it is wider too, and has a scroll bar.
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    scroll->setFixedWidth(std::max(sidebarWidth, side->minimumSizeHint().width() + bar));
    return scroll;
}

QWidget *XPScanController::buildProfiles()
{
    auto *both = new QWidget(this);
    auto *line = new QHBoxLayout(both);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(4);
    m_profiles = new QComboBox(both);
    m_profiles->setAccessibleName(qtTrId("KPScanProfile"));
    m_profiles->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_profileMenu = new QToolButton(both);
    m_profileMenu->setIcon(KPDocIcons::symbol(QStringLiteral("settings")));
    m_profileMenu->setAutoRaise(true);
    KPMenuButton::openByClick(*m_profileMenu);
    m_profileMenu->setToolTip(qtTrId("KPScanProfileMenu"));
    m_profileMenu->setAccessibleName(qtTrId("KPScanProfileMenu"));
    m_profileMenu->setMenu(new QMenu(m_profileMenu));
    line->addWidget(m_profiles, 1);
    line->addWidget(m_profileMenu);
    connect(m_profileMenu->menu(), &QMenu::aboutToShow, this, &XPScanController::fillProfileMenu);
    connect(m_profiles, &QComboBox::activated, this, [this] {
        if (const auto profile = Profile::named(m_profiles->currentText()))
            useProfile(*profile);
    });
    m_observations.push_back(
        UserDefaults::standard().addObserver(QStringLiteral("values.") + Profile::profilesKey,
                                             [this](const PropertyValue &) { showProfiles(); }));
    showProfiles();
    return both;
}

QWidget *XPScanController::buildButtons()
{
    auto *bar = new QWidget(this);
    auto *line = new QHBoxLayout(bar);
    line->setContentsMargins(16, 8, 16, 16);
    line->setSpacing(8);
    m_counter = new QLabel(bar);
    m_note = new QLabel(bar);
    m_note->setTextFormat(Qt::PlainText);
    m_progress = new QProgressBar(bar);
    m_progress->setMaximumWidth(160);
    m_progress->setTextVisible(false);
    m_progress->setAccessibleName(qtTrId("KPScanProgress"));
    m_progress->hide();
    m_contrast = new QSlider(Qt::Horizontal, bar);
    m_contrast->setRange(50, 200);
    m_contrast->setMaximumWidth(200);
    m_contrast->setAccessibleName(qtTrId("KPToolbarContrastLabel"));
    m_contrast->hide();
    m_proportion = new QComboBox(bar);
    m_proportion->setAccessibleName(qtTrId("KPScanProportion"));
    m_proportion->setToolTip(qtTrId("KPScanProportion"));
    m_proportion->addItem(qtTrId("KPScanAnyProportion"), 0);
    for (const int paper : {1, 5, 11, XPPaperSizes::usLetter, 4}) // A4, A5, A3, Letter, Legal
        m_proportion->addItem(XPPaperSizes::name(paper), paper);
    m_proportion->hide();
    connect(m_proportion, &QComboBox::activated, this, &XPScanController::chooseProportion);
    const auto button = [&](const char *text) { return new QPushButton(qtTrId(text), bar); };
    m_apply = button(QT_TRID_NOOP("KPScanApply"));
    m_leave = button(QT_TRID_NOOP("KPScanLeaveTool"));
    m_stop = button(QT_TRID_NOOP("KPScanStop"));
    m_scan = button(QT_TRID_NOOP("KPScanPage"));
    m_done = button(QT_TRID_NOOP("KPScanDone"));
    m_next = button(QT_TRID_NOOP("KPScanNextDocument"));
    m_next->setToolTip(qtTrId("KPScanNextDocumentTip"));
    auto *cancel = button(QT_TRID_NOOP("KPCancel"));
    line->addWidget(m_counter);
    line->addWidget(m_note, 1);
    line->addWidget(m_progress);
    for (QWidget *each : std::initializer_list<QWidget *>{
             m_contrast, m_proportion, m_leave, m_apply, m_stop, cancel, m_scan, m_next, m_done})
        line->addWidget(each);
    m_scan->setDefault(true);
    m_scan->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_N));
    m_done->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return));
    connect(cancel, &QPushButton::clicked, this, &XPScanController::cancelAction);
    connect(m_scan, &QPushButton::clicked, this, &XPScanController::scanNewPageAction);
    connect(m_stop, &QPushButton::clicked, this, [this] {
        m_goesOn = false;
        m_device.cancelScan();
    });
    m_next->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Return));
    connect(m_done, &QPushButton::clicked, this, &XPScanController::doneAction);
    connect(m_next, &QPushButton::clicked, this, &XPScanController::nextDocumentAction);
    connect(m_apply, &QPushButton::clicked, this, &XPScanController::applyTool);
    connect(m_leave, &QPushButton::clicked, this, [this] { setTool(Tool::None); });
    return bar;
}

void XPScanController::connectParts()
{
    connect(&m_pages, &XPScannedPages::changed, this, &XPScanController::showStrip);
    connect(m_strip, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0)
            m_pages.setCurrentPageNumber(row + 1);
    });
    connect(m_strip->model(), &QAbstractItemModel::rowsMoved, this,
            [this](const QModelIndex &, int from, int, const QModelIndex &, int to) {
                m_pages.movePage(from, to > from ? to - 1 : to);
            });
    connect(m_view, &XPScanImageView::filesDropped, this, &XPScanController::addFiles);
    connect(m_view, &XPScanImageView::lineDrawn, this, [this](double degrees) {
        m_edit.straightenAngle -= degrees;
        showPage();
    });
    connect(m_contrast, &QSlider::valueChanged, this, [this](int percent) {
        m_edit.contrastPercentage = percent;
        showPage();
    });
    connect(m_scannerPopup, &QComboBox::activated, this, &XPScanController::chooseScanner);
    connect(m_paperPopup, &QComboBox::activated, this, [this] {
        UserDefaults::standard().setValue(
            XPImageCaptureCoreDevice::selectedPaperKey,
            PropertyValue::integer(m_paperPopup->currentData().toInt()));
    });
    connect(m_mode, &QComboBox::activated, this, [this] {
        UserDefaults::standard().setValue(Profile::modeKey, m_mode->currentData().toString());
    });
    connect(m_resolution, &QComboBox::activated, this, [this] {
        UserDefaults::standard().setValue(
            Profile::resolutionKey, PropertyValue::integer(m_resolution->currentData().toInt()));
    });
    connect(m_tags, &XPTagsEditor::tagsEdited, this, &XPScanController::tagsEdited);
    connect(m_stars, &XPStarsEditor::rated, this, &XPScanController::tagsEdited);
    for (const auto &[key, step] :
         {std::pair(Qt::Key_PageDown, 1), std::pair(Qt::Key_PageUp, -1)}) {
        auto *shortcut = new QShortcut(key, this);
        connect(shortcut, &QShortcut::activated, this,
                step > 0 ? &XPScanController::nextPageAction
                         : &XPScanController::previousPageAction);
    }
    XPNotificationCenter &center = XPNotificationCenter::instance();
    using Device = XPImageCaptureCoreDevice;
    m_observations.push_back(center.addObserver(
        Device::listChangedNotification, [this](const XPNotification &) { showScanners(); }));
    m_observations.push_back(center.addObserver(
        Device::completeNotification, [this](const XPNotification &) { scanningComplete(); }));
    m_observations.push_back(center.addObserver(Device::sizesAvailableNotification,
                                                [this](const XPNotification &) { showPapers(); }));
}

// --- What is shown

void XPScanController::showScanners()
{
    const QString selected =
        UserDefaults::standard().stringValue(XPImageCaptureCoreDevice::selectedScannerKey);
    m_scannerPopup->clear();
    m_scannerPopup->addItems(m_device.scannerNames());
    m_scannerPopup->setEnabled(m_device.hasScanner());
    if (!m_device.hasScanner())
        m_scannerPopup->addItem(qtTrId("KPNoScannerAvailable"));
    m_scannerPopup->setCurrentIndex(std::max(0, m_scannerPopup->findText(selected)));
    showPapers();
    showPage();
    updateButtons();
}

void XPScanController::showPapers()
{
    const int selected = static_cast<int>(
        UserDefaults::standard().integerValue(XPImageCaptureCoreDevice::selectedPaperKey));
    m_paperPopup->clear();
    for (const int paper : m_device.paperSizesForCurrentScanner())
        m_paperPopup->addItem(XPImageCaptureCoreDevice::paperSizeLocalized(paper), paper);
    m_paperPopup->setCurrentIndex(std::max(0, m_paperPopup->findData(selected)));
}

void XPScanController::chooseScanner()
{
    UserDefaults::standard().setValue(XPImageCaptureCoreDevice::selectedScannerKey,
                                      m_scannerPopup->currentText());
    m_device.openSelectedScanner();
    showPapers();
}

// Of the scanner that is chosen now: a profile is for paper, whatever scanner takes it.
void XPScanController::useProfile(const Profile &profile)
{
    profile.useForSettings();
    const auto scanner = m_device.scannerFromString(m_scannerPopup->currentText(), nullptr);
    const int row = scanner && profile.unit
                        ? m_scannerPopup->findText(XPImageCaptureCoreDevice::stringFromScanner(
                              scanner->name, *profile.unit))
                        : -1;
    if (row < 0)
        return showPapers();
    m_scannerPopup->setCurrentIndex(row);
    chooseScanner();
}

void XPScanController::showProfiles()
{
    const QString chosen = m_profiles->currentText();
    m_profiles->clear();
    m_profiles->addItems(Profile::names());
    m_profiles->setPlaceholderText(qtTrId("KPScanNoProfile"));
    m_profiles->setCurrentIndex(m_profiles->findText(chosen));
    m_profiles->setEnabled(m_profiles->count() > 0);
}

void XPScanController::fillProfileMenu()
{
    QMenu *menu = m_profileMenu->menu();
    menu->clear();
    menu->addAction(qtTrId("KPScanSaveProfile"), this, &XPScanController::saveProfile);
    const QString chosen = m_profiles->currentText();
    if (chosen.isEmpty())
        return;
    QString shown = XPPath::printable(chosen);
    menu->addAction(qtTrId("KPScanDeleteProfile").arg(shown.replace(u'&', QStringLiteral("&&"))),
                    this, [chosen] {
                        if (const auto error = Profile::remove(chosen))
                            XPPrompts::current().alert(qtTrId("KPScanProfileNotSaved"),
                                                       error->reason());
                    });
}

void XPScanController::saveProfile()
{
    auto *dialog = new QInputDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(qtTrId("KPScanSaveProfileTitle"));
    dialog->setLabelText(qtTrId("KPScanProfileName"));
    dialog->setTextValue(m_profiles->currentText());
    connect(dialog, &QInputDialog::textValueSelected, this, [this](const QString &text) {
        const QString name = text.trimmed();
        if (name.isEmpty())
            return;
        Profile profile = Profile::ofSettings();
        if (int unit = 0; m_device.scannerFromString(m_scannerPopup->currentText(), &unit))
            profile.unit = unit;
        // Only the shell asks for the number of pages.
        profile.pages = Profile::named(name).value_or(profile).pages;
        if (const auto error = profile.save(name))
            return XPPrompts::current().alert(qtTrId("KPScanProfileNotSaved"), error->reason());
        m_profiles->setCurrentIndex(m_profiles->findText(name));
    });
    dialog->open();
}

void XPScanController::showStrip()
{
    const QSignalBlocker quiet(m_strip);
    while (m_strip->count() > m_pages.numberOfPages())
        delete m_strip->takeItem(m_strip->count() - 1);
    for (int index = 0; index < m_pages.numberOfPages(); ++index) {
        const XPScannedPages::Page &page = m_pages.pages().at(index);
        QListWidgetItem *item = m_strip->item(index);
        if (!item) {
            item = new QListWidgetItem(m_strip);
            item->setFlags(item->flags() & ~Qt::ItemIsDropEnabled);
        }
        item->setText(page.isBlank ? qtTrId("KPScanBlankPage").arg(index + 1)
                                   : QString::number(index + 1));
        const QString shown = page.path + QString::number(page.edit.quarterTurns);
        if (item->data(Qt::UserRole).toString() == shown)
            continue;
        item->setData(Qt::UserRole, shown);
        item->setIcon({});
        // The row may hold another page by the time the picture is there.
        m_loader->load(page.path, [this, shown, edit = page.edit](const QImage &image) {
            for (int row = 0; row < m_strip->count(); ++row) {
                if (m_strip->item(row)->data(Qt::UserRole).toString() == shown)
                    m_strip->item(row)->setIcon(QPixmap::fromImage(edit.applied(
                        image.scaled(144, 192, Qt::KeepAspectRatio, Qt::SmoothTransformation))));
            }
        });
    }
    m_strip->setCurrentRow(m_pages.currentPageNumber() - 1);
    m_strip->parentWidget()->setVisible(m_pages.numberOfPages() > 0);
    showPage();
    updateButtons();
}

void XPScanController::showPage()
{
    const QString path = m_pages.currentPagePath();
    const int count = m_pages.numberOfPages();
    m_counter->setText(
        count ? qtTrId("KPPageCount")
                    .replace(QStringLiteral("%1"), QString::number(m_pages.currentPageNumber()))
                    .replace(QStringLiteral("%2"), QString::number(count))
              : qtTrId("KPPageCountNone"));
    if (path.isEmpty()) {
        m_shownPath.clear();
        m_shown = {};
        m_view->setPage({}, qtTrId("KPScanPages"));
        m_view->setText(m_device.hasScanner()
                            ? qtTrId("KPScanInstructions") + QStringLiteral("\n\n") +
                                  qtTrId("KPScanInstructionsDropZone")
                            : qtTrId("KPNoScannerInstructions"));
        return;
    }
    if (m_shownPath != path) {
        m_shownPath = path;
        m_isLoading = true; // the last page stays in sight until then
        m_loader->load(path, [this, path](const QImage &image) {
            if (path != m_shownPath)
                return; // another page was chosen meanwhile
            m_shown = image;
            m_isLoading = false;
            showPage();
        });
    }
    if (m_isLoading)
        return;
    XPPageEdit edit = m_tool == Tool::None ? currentEdit() : m_edit;
    if (m_tool == Tool::Crop)
        edit.crop = QRectF(0, 0, 1, 1);
    m_view->setPage(edit.applied(m_shown),
                    qtTrId("KPScanPageName").arg(m_pages.currentPageNumber()));
}

void XPScanController::updateButtons()
{
    const bool hasPage = m_pages.currentPageNumber() > 0;
    const bool isBusy = m_device.nowScanning() || m_isFiling;
    for (QAction *action : {m_rotate, m_crop, m_straighten, m_contrastTool, m_delete})
        action->setEnabled(hasPage && !m_isFiling);
    m_interleave->setEnabled(m_pages.numberOfPages() > 2 && !isBusy);
    m_crop->setChecked(m_tool == Tool::Crop);
    m_straighten->setChecked(m_tool == Tool::Straighten);
    m_contrastTool->setChecked(m_tool == Tool::Contrast);
    m_contrast->setVisible(m_tool == Tool::Contrast);
    m_proportion->setVisible(m_tool == Tool::Crop);
    m_apply->setVisible(m_tool != Tool::None);
    m_leave->setVisible(m_tool != Tool::None);
    m_scan->setVisible(!m_device.nowScanning());
    m_scan->setEnabled(!isBusy && !m_pages.error());
    m_stop->setVisible(m_device.nowScanning());
    m_done->setEnabled(!isBusy);
    m_next->setEnabled(!isBusy && m_pages.numberOfPages() > 0);
    m_progress->setVisible(isBusy);
}
