#include "KPFileTypesSection.h"

#include "KPContentTypes.h"
#include "KPDocServices.h"
#include "KPFileType.h"
#include "KPFileTypeRegistry.h"
#include "KPLook.h"
#include "XPFileUrls.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QCompleter>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>

static constexpr int listHeight = 300;
static constexpr std::chrono::milliseconds untilSaved{500};

static KPFileTypeRegistry &registry()
{
    return KPFileTypeRegistry::instance();
}

static QPushButton *button(const char *id)
{
    auto *made = new QPushButton(qtTrId(id));
    made->setAutoDefault(false);
    return made;
}

static QLabel *heading(const char *id)
{
    auto *label = new QLabel(qtTrId(id));
    label->setFont(KPLook::font(KPLook::Type::Facts));
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

static void onDelete(QListWidget *list, QPushButton *button)
{
    auto *key = new QShortcut(QKeySequence::Delete, list);
    key->setContext(Qt::WidgetShortcut);
    QObject::connect(key, &QShortcut::activated, button, [button] { button->click(); });
}

static QStringList allNames()
{
    QStringList names;
    for (KPContentTypes::Number type = 1; type <= KPContentTypes::count(); ++type)
        names.append(KPFileType::displayNameForUTI(KPContentTypes::identifier(type)));
    names.removeDuplicates();
    names.sort(Qt::CaseInsensitive);
    return names;
}

KPFileTypesSection::KPFileTypesSection(QWidget *parent)
    : QWidget(parent), m_groups(new QListWidget), m_types(new QListWidget), m_field(new QLineEdit),
      m_delete(button(QT_TRID_NOOP("KPKindsDelete"))), m_reset(button(QT_TRID_NOOP("KPPrefReset"))),
      m_remove(button(QT_TRID_NOOP("KPPrefRemove"))), m_problem(new QLabel)
{
    auto *columns = new QHBoxLayout;
    columns->setSpacing(16);
    columns->addWidget(makeGroups(), 2, Qt::AlignTop);
    columns->addWidget(makeTypes(), 3);
    auto *hint = new QLabel(qtTrId("KPKindsHint"));
    hint->setWordWrap(true);
    hint->setFont(KPLook::font(KPLook::Type::Facts));
    hint->setForegroundRole(QPalette::PlaceholderText);
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setWordWrap(true);
    m_problem->hide();
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(hint);
    column->addLayout(columns);
    column->addWidget(m_problem);
    m_refreshing.setSingleShot(true);
    connect(&m_refreshing, &QTimer::timeout, this, &KPFileTypesSection::refresh);
    m_saving.setSingleShot(true);
    m_saving.setInterval(untilSaved);
    connect(&m_saving, &QTimer::timeout, this, &KPFileTypesSection::save);
    m_observation = XPNotificationCenter::instance().addObserver(
        KPFileTypeRegistry::changedNotification, [this](const XPNotification &) {
            m_refreshing.start();
            m_saving.start();
        });
    refresh();
    m_groups->setCurrentRow(0);
    offerNames();
}

KPFileTypesSection::~KPFileTypesSection()
{
    if (m_saving.isActive())
        save();
}

QWidget *KPFileTypesSection::makeGroups()
{
    m_groups->setAccessibleName(qtTrId("KPKindsGroups"));
    m_groups->setFixedHeight(listHeight);
    m_groups->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    connect(m_groups, &QListWidget::currentRowChanged, this, [this] {
        if (!m_isFilling)
            showTypes();
    });
    connect(m_groups, &QListWidget::itemChanged, this, &KPFileTypesSection::changed);
    auto *make = button(QT_TRID_NOOP("KPKindsNew"));
    connect(make, &QPushButton::clicked, this, &KPFileTypesSection::addGroup);
    connect(m_delete, &QPushButton::clicked, this, &KPFileTypesSection::deleteGroup);
    connect(m_reset, &QPushButton::clicked, this, &KPFileTypesSection::resetGroup);
    onDelete(m_groups, m_delete);
    auto *line = new QHBoxLayout;
    line->setSpacing(8);
    line->addWidget(make);
    line->addWidget(m_delete);
    line->addStretch(1);
    auto *part = new QWidget;
    auto *column = new QVBoxLayout(part);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(heading(QT_TRID_NOOP("KPKindsGroups")));
    column->addWidget(m_groups);
    column->addLayout(line);
    return part;
}

QWidget *KPFileTypesSection::makeTypes()
{
    m_types->setAccessibleName(qtTrId("KPKindsTypes"));
    m_types->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored); // to end with the groups
    m_types->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_types->setTextElideMode(Qt::ElideRight);
    m_types->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_types->setAcceptDrops(true);
    m_types->viewport()->installEventFilter(this);
    connect(m_types, &QListWidget::itemSelectionChanged, this, &KPFileTypesSection::updateButtons);
    m_field->setObjectName(QStringLiteral("KPKindsField"));
    m_field->setPlaceholderText(qtTrId("KPKindsAddHint"));
    m_field->setAccessibleName(qtTrId("KPKindsAddHint"));
    connect(m_field, &QLineEdit::returnPressed, this, &KPFileTypesSection::addTyped);
    auto *add = button(QT_TRID_NOOP("KPPrefAddRule"));
    connect(add, &QPushButton::clicked, this, &KPFileTypesSection::addTyped);
    connect(m_remove, &QPushButton::clicked, this, &KPFileTypesSection::removeTypes);
    onDelete(m_types, m_remove);
    auto *entry = new QHBoxLayout;
    entry->setSpacing(8);
    entry->addWidget(m_field, 1);
    entry->addWidget(add);
    auto *line = new QHBoxLayout;
    line->setSpacing(8);
    line->addWidget(m_remove);
    line->addStretch(1);
    line->addWidget(m_reset);
    auto *part = new QWidget;
    auto *column = new QVBoxLayout(part);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(heading(QT_TRID_NOOP("KPKindsTypes")));
    column->addWidget(m_types, 1);
    column->addLayout(entry);
    column->addLayout(line);
    return part;
}

// In another language than English the names stand in hundreds of files.
void KPFileTypesSection::offerNames()
{
    xpGuiThread.assertHere();
    const auto names = std::make_shared<QStringList>();
    KPDocServices::current().runFileWork([names] { *names = allNames(); },
                                         [self = QPointer(this), names] {
                                             if (!self)
                                                 return;
                                             auto *completer =
                                                 new QCompleter(*names, self->m_field);
                                             completer->setCaseSensitivity(Qt::CaseInsensitive);
                                             completer->setFilterMode(Qt::MatchContains);
                                             self->m_field->setCompleter(completer);
                                         });
}

// --- What is shown

KPFileTypesSection::GroupPtr KPFileTypesSection::group() const
{
    const int row = m_groups->currentRow();
    const KPFileTypeRegistry::Groups &groups = registry().fileTypeGroupsArray();
    return row >= 0 && row < groups.size() ? groups[row] : nullptr;
}

void KPFileTypesSection::refresh()
{
    const KPFileTypeRegistry::Groups &groups = registry().fileTypeGroupsArray();
    int row = m_groups->currentRow();
    m_isFilling = true;
    m_groups->clear();
    for (const GroupPtr &each : groups) {
        auto *item = new QListWidgetItem(QIcon(each->sourceListImage()),
                                         XPPath::printable(each->displayName()), m_groups);
        item->setFlags(item->flags() | Qt::ItemIsEditable | Qt::ItemIsUserCheckable);
        item->setCheckState(each->enabled() ? Qt::Checked : Qt::Unchecked);
        item->setToolTip(each->builtinString());
        if (!m_renameNext.isEmpty() && each->displayName() == m_renameNext)
            row = m_groups->count() - 1;
    }
    m_groups->setCurrentRow(std::clamp(row, 0, std::max(0, m_groups->count() - 1)));
    m_isFilling = false;
    if (!m_renameNext.isEmpty())
        m_groups->editItem(m_groups->currentItem());
    m_renameNext.clear();
    showTypes();
}

void KPFileTypesSection::showTypes()
{
    m_types->clear();
    const GroupPtr shown = group();
    for (const QString &entry : shown ? shown->utiArray() : QStringList()) {
        auto *item = new QListWidgetItem(KPFileTypeGroup::nameOfEntry(entry), m_types);
        item->setData(Qt::UserRole, entry);
        item->setToolTip(XPPath::printable(entry));
    }
    updateButtons();
}

void KPFileTypesSection::updateButtons()
{
    const GroupPtr shown = group();
    const auto chosen = m_types->selectedItems().size();
    // A group without types is none; who does not want it switches it off.
    m_remove->setEnabled(chosen > 0 && chosen < m_types->count());
    m_delete->setEnabled(shown && !shown->isBuiltIn());
    const GroupPtr factory = shown && shown->isBuiltIn()
                                 ? registry().fileTypeGroupWithName(shown->builtInName())
                                 : nullptr;
    m_reset->setVisible(factory && (!shown->isEqual(*factory) ||
                                    shown->displayName() != factory->displayName() ||
                                    shown->enabled() != factory->enabled()));
}

void KPFileTypesSection::say(const QString &problem)
{
    m_problem->setText(problem);
    m_problem->setVisible(!problem.isEmpty());
}

// --- What is changed

void KPFileTypesSection::changed(QListWidgetItem *item)
{
    const int row = m_groups->row(item);
    const KPFileTypeRegistry::Groups &groups = registry().fileTypeGroupsArray();
    if (m_isFilling || row < 0 || row >= groups.size())
        return;
    const GroupPtr one = groups[row];
    const QString name = item->text().simplified();
    if (!name.isEmpty() && name != XPPath::printable(one->displayName()))
        one->setTheDisplayName(name);
    one->setTheEnabled(item->checkState() == Qt::Checked);
    m_refreshing.start(); // an empty name is as it was
}

void KPFileTypesSection::addGroup()
{
    const KPFileTypeRegistry::Groups &groups = registry().fileTypeGroupsArray();
    const QString name = qtTrId("KPKindsNewName");
    QString unused = name;
    for (int i = 2;
         std::any_of(groups.begin(), groups.end(),
                     [&](const GroupPtr &each) { return each->displayName() == unused; });
         ++i)
        unused = name + u' ' + QString::number(i);
    m_renameNext = unused;
    registry().addGroup(std::make_shared<KPFileTypeGroup>(true, unused, false));
}

void KPFileTypesSection::deleteGroup()
{
    const GroupPtr gone = group();
    if (!gone || gone->isBuiltIn())
        return;
    XPPrompts::Question question;
    question.title = qtTrId("KPKindsDeleteTitle").arg(XPPath::printable(gone->displayName()));
    question.text = qtTrId("KPKindsDeleteText");
    question.buttons = {qtTrId("KPKindsDelete"), qtTrId("KPCancel")};
    question.cancelButton = 1;
    XPPrompts::current().ask(question, [gone](int button) {
        if (button == 0)
            registry().removeGroup(gone);
    });
}

void KPFileTypesSection::resetGroup()
{
    const GroupPtr one = group();
    if (!one || !one->isBuiltIn())
        return;
    one->takeFrom(*registry().fileTypeGroupWithName(one->builtInName()));
    registry().announceChange();
}

void KPFileTypesSection::addTyped()
{
    const QString typed = m_field->text().trimmed();
    if (!typed.isEmpty())
        addFound([typed] { return KPFileTypeGroup::entriesForText(typed); }, typed);
}

void KPFileTypesSection::addFiles(const QStringList &paths)
{
    addFound(
        [paths] {
            QStringList types;
            for (const QString &path : paths)
                types.append(KPFileType::utiForFile(path));
            types.removeAll(KPFileType::noFileUTI);
            return types;
        },
        {});
}

// Looked for where the disk may be waited for.
void KPFileTypesSection::addFound(std::function<QStringList()> find, const QString &typed)
{
    xpGuiThread.assertHere();
    const auto found = std::make_shared<QStringList>();
    KPDocServices::current().runFileWork([find = std::move(find), found] { *found = find(); },
                                         [self = QPointer(this), to = group(), found, typed] {
                                             if (self && to)
                                                 self->addEntries(*to, *found, typed);
                                         });
}

void KPFileTypesSection::addEntries(KPFileTypeGroup &to, const QStringList &entries,
                                    const QString &typed)
{
    if (entries.isEmpty() && !typed.isEmpty()) {
        say(qtTrId("KPKindsUnknown").arg(XPPath::printable(typed)));
        return;
    }
    if (m_field->text().trimmed() == typed)
        m_field->clear();
    const qsizetype before = to.utiArray().size();
    for (const QString &entry : entries) {
        if (!to.containsType(entry))
            to.addUTI(entry);
    }
    const bool isNews = to.utiArray().size() > before;
    say(isNews || entries.isEmpty()
            ? QString()
            : qtTrId("KPKindsKnown").arg(KPFileTypeGroup::nameOfEntry(entries.first())));
    if (isNews)
        registry().announceChange();
}

void KPFileTypesSection::removeTypes()
{
    const GroupPtr from = group();
    if (!from || !m_remove->isEnabled())
        return;
    for (const QListWidgetItem *item : m_types->selectedItems())
        from->removeUTI(item->data(Qt::UserRole).toString());
    registry().announceChange();
}

void KPFileTypesSection::save()
{
    if (const auto error = registry().writeFileTypesPlist())
        say(qtTrId("KPKindsNotSaved").arg(error->reason()));
}

bool KPFileTypesSection::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::DragEnter && event->type() != QEvent::DragMove &&
        event->type() != QEvent::Drop)
        return QWidget::eventFilter(watched, event);
    auto *drop = static_cast<QDropEvent *>(event);
    const QStringList paths = XPFileUrls::paths(drop->mimeData());
    if (paths.isEmpty() || !group() || !(drop->possibleActions() & Qt::CopyAction))
        return QWidget::eventFilter(watched, event);
    // Nothing happens to the files.
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    if (event->type() == QEvent::Drop)
        addFiles(paths);
    return true;
}
