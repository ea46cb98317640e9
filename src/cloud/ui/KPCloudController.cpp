#include "KPCloudController.h"

#include "KPDocIcons.h"
#include "UserDefaults.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>

static KPCloudController *instance = nullptr;

static constexpr std::chrono::milliseconds rebuildPause{50};
static constexpr double mostForTypes = 0.4; // of the height of both clouds

KPCloudController *KPCloudController::singleInstance()
{
    return instance;
}

KPCloudController::KPCloudController(KPNavigator &navigator, QWidget *parent)
    : QWidget(parent), m_navigator(navigator), m_filter(new QLineEdit(this))
{
    instance = this;
    m_filter->setPlaceholderText(qtTrId("KPCloudFilterHint"));
    m_filter->setAccessibleName(qtTrId("KPCloudFilter"));
    m_filter->setClearButtonEnabled(true);
    m_filter->installEventFilter(this);
    connect(m_filter, &QLineEdit::textChanged, this, &KPCloudController::buildViewsFromTagSet);
    m_clouds = {new KPCloudViewController(QT_TRID_NOOP("KPCloudTags"), this,
                                          KPCloudContents::userTags, navigator),
                new KPCloudViewController(QT_TRID_NOOP("KPCloudFileTypes"), this,
                                          KPCloudContents::fileTypes, navigator)};
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(12, 8, 8, 8);
    column->setSpacing(4);
    column->addWidget(m_clouds[0]->heading());
    column->addWidget(m_filter);
    column->addWidget(m_clouds[0]->view(), 1);
    column->addWidget(m_clouds[1]->heading());
    column->addWidget(m_clouds[1]->view());
    column->addStretch(0);
    m_rebuild.setSingleShot(true);
    m_rebuild.setInterval(rebuildPause);
    connect(&m_rebuild, &QTimer::timeout, this, &KPCloudController::timerFireRebuildViews);
    observe();
}

KPCloudController::~KPCloudController()
{
    if (instance == this)
        instance = nullptr;
}

void KPCloudController::observe()
{
    for (const QString &name : {KPSearcher::tagSetsChanged, KPSearcher::stateChanged})
        m_observations.push_back(XPNotificationCenter::instance().addObserver(
            name, [this](const XPNotification &) { invalidateTagSet(); }));
    for (const char *key :
         {"XPDrawCloudItemsSingleColumn", "XPDrawCloudItemsBlack", "KPCloudShowFrequency",
          "KPCloudAlwaysTags2", "KPCloudNeverTags2", "KPTagGroupUserTags", "KPTagGroupFileTypes"})
        m_observations.push_back(UserDefaults::standard().addObserver(
            QStringLiteral("values.") + QLatin1String(key),
            [this](const PropertyValue &) { invalidateTagSet(); }));
}

QString KPCloudController::filterString() const
{
    return m_filter->text();
}

void KPCloudController::setFilterString(const QString &text)
{
    m_filter->setText(text);
}

void KPCloudController::focusFilter()
{
    m_filter->setFocus(Qt::ShortcutFocusReason);
    m_filter->selectAll();
}

void KPCloudController::invalidateTagSet()
{
    if (!m_rebuild.isActive())
        m_rebuild.start();
}

void KPCloudController::timerFireRebuildViews()
{
    if (isVisible())
        buildViewsFromTagSet();
}

// The types take what they need, up to a part; the tags take the rest.
void KPCloudController::shareHeight()
{
    XPTextCloudView *tags = m_clouds[0]->view();
    XPTextCloudView *types = m_clouds[1]->view();
    tags->setVisible(!m_clouds[0]->hidden());
    types->setVisible(!m_clouds[1]->hidden());
    if (!types->isHidden()) {
        const double both = tags->isHidden() ? height() : tags->height() + types->height();
        const double most = tags->isHidden() ? both : both * mostForTypes;
        const double wanted = m_clouds[1]->heightForAll();
        types->setFixedHeight(
            static_cast<int>(std::max(types->lineHeight() + 4, std::min(wanted, most))));
    }
    layout()->activate();
}

void KPCloudController::buildViewsFromTagSet()
{
    m_rebuild.stop();
    for (KPCloudViewController *cloud : m_clouds)
        cloud->setFilterString(filterString());
    shareHeight();
    for (KPCloudViewController *cloud : m_clouds)
        cloud->repopulateTagCloud();
    findBestMatch();
}

void KPCloudController::findBestMatch()
{
    XPBestMatch match(filterString());
    for (const KPCloudViewController *cloud : m_clouds) {
        for (const XPCloudItem &item : cloud->view()->drawnItems()) {
            if (!filterString().isEmpty())
                match.setBestMatchIfBetter(item);
        }
    }
    for (KPCloudViewController *cloud : m_clouds)
        cloud->view()->setBestMatch(match);
}

void KPCloudController::bestMatchAction()
{
    for (KPCloudViewController *cloud : m_clouds) {
        const XPTextCloudView *view = cloud->view();
        for (const XPCloudItem &item : view->drawnItems()) {
            if (item.clickRemoves || !view->bestMatch().is(item))
                continue;
            const XPCloudItem chosen = item;
            setFilterString({});
            cloud->cloudViewItemClicked(chosen, Qt::NoModifier);
            return;
        }
    }
}

void KPCloudController::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    buildViewsFromTagSet();
}

void KPCloudController::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    invalidateTagSet();
}

bool KPCloudController::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    switch (static_cast<QKeyEvent *>(event)->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        bestMatchAction();
        return true;
    case Qt::Key_Escape:
        if (filterString().isEmpty())
            Q_EMIT left();
        setFilterString({});
        return true;
    case Qt::Key_Down:
        m_clouds[0]->view()->setFocus(Qt::TabFocusReason);
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}

// A setting that is on or off, as a command.
static KPCommand settingCommand(const char *id, const QString &key)
{
    KPCommand command{id, KPCommandMenu::Tags};
    command.run = [key] {
        UserDefaults &defaults = UserDefaults::standard();
        defaults.setValue(key, PropertyValue::boolean(!defaults.boolValue(key)));
    };
    command.state = [key] { return KPCommandState{true, UserDefaults::standard().boolValue(key)}; };
    return command;
}

QList<KPCommand> KPCloudController::commands()
{
    KPCommand filter{QT_TRID_NOOP("KPCloudFilterCommand"), KPCommandMenu::Tags,
                     QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_T)};
    filter.run = [this] { focusFilter(); };
    filter.state = [this] { return KPCommandState{isVisible()}; };
    KPCommand black = settingCommand(QT_TRID_NOOP("KPCloudBlackCommand"),
                                     QStringLiteral("XPDrawCloudItemsBlack"));
    black.endsGroup = true;
    return {filter,
            settingCommand(QT_TRID_NOOP("KPCloudSingleColumnCommand"),
                           QStringLiteral("XPDrawCloudItemsSingleColumn")),
            black};
}
