#include "XPTagEditorController.h"

#include "KPDocServices.h"
#include "KPEditSummary.h"
#include "KPRecentTagGroups.h"
#include "KPTagSuggestions.h"
#include "Karvex.h"
#include "KarvexPrefs.h"
#include "UserDefaults.h"
#include "XPFlowLayout.h"
#include "XPPath.h"
#include "XPStarsEditor.h"
#include "XPTagsEditor.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

static const QString frameKey = QStringLiteral("XPTagsWindowFrame");

static bool setting(const char *key)
{
    return UserDefaults::standard().boolValue(QLatin1String(key));
}

static QLabel *caption(const char *id, QWidget *of)
{
    auto *label = new QLabel(qtTrId(id));
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setBuddy(of);
    return label;
}

// A row of small buttons under a caption, hidden while there are none.
static QWidget *buttonRow(const char *id, QVBoxLayout *column)
{
    auto *row = new QWidget;
    auto *inner = new QVBoxLayout(row);
    inner->setContentsMargins(0, 0, 0, 0);
    inner->setSpacing(4);
    inner->addWidget(caption(id, nullptr));
    auto *buttons = new QWidget;
    buttons->setLayout(new XPFlowLayout(buttons));
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    buttons->setSizePolicy(policy);
    buttons->setObjectName(QStringLiteral("buttons"));
    inner->addWidget(buttons);
    row->hide();
    column->addWidget(row);
    return row;
}

static void clearRow(QWidget *row)
{
    auto *buttons = row->findChild<QWidget *>(QStringLiteral("buttons"));
    for (QToolButton *button : buttons->findChildren<QToolButton *>()) {
        buttons->layout()->removeWidget(button);
        button->hide();
        button->deleteLater(); // its own click may have brought us here
    }
    row->hide();
}

static QToolButton *addButton(QWidget *row, const QString &text)
{
    auto *buttons = row->findChild<QWidget *>(QStringLiteral("buttons"));
    auto *button = new QToolButton(buttons);
    button->setText(XPPath::printable(text).replace(u'&', QStringLiteral("&&")));
    button->setFocusPolicy(Qt::StrongFocus);
    button->setAccessibleName(XPPath::printable(text));
    static_cast<XPFlowLayout *>(buttons->layout())
        ->insertWidget(buttons->layout()->count(), button);
    button->show();
    row->show();
    return button;
}

XPTagEditorController::XPTagEditorController(QWidget *window)
    : QDialog(window), m_names(new QLabel), m_note(new QLabel), m_rating(new QLabel),
      m_stars(new XPStarsEditor), m_tags(new XPTagsEditor(XPTagsEditor::Purpose::Edit))
{
    setObjectName(QStringLiteral("XPTagEditorWindow"));
    build();
    resize(460, 340);
    restoreGeometry(UserDefaults::standard().value(frameKey).data());
    m_tags->setSuggestions([] {
        if (setting("XPSkipTagAutoComplete"))
            return QStringList();
        return Karvex::removeDuplicateTags(KarvexPrefs::recentTags() +
                                           KPTagSuggestions::popularTags());
    });
    connect(m_stars, &XPStarsEditor::rated, this, [this](int stars) {
        m_newRating = stars;
        showRating();
    });
}

XPTagEditorController::~XPTagEditorController() = default;

void XPTagEditorController::build()
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 12);
    column->setSpacing(8);
    for (QLabel *label : {m_names, m_note, m_rating})
        label->setTextFormat(Qt::PlainText);
    QFont font = m_names->font();
    font.setWeight(QFont::DemiBold);
    m_names->setFont(font);
    m_note->setWordWrap(true);
    m_note->setForegroundRole(QPalette::PlaceholderText);
    m_rating->setForegroundRole(QPalette::PlaceholderText);
    column->addWidget(m_names);
    auto *rating = new QHBoxLayout;
    rating->addWidget(m_stars);
    rating->addWidget(m_rating, 1);
    column->addLayout(rating);
    column->addWidget(caption(QT_TRID_NOOP("KPTags"), m_tags));
    column->addWidget(m_tags);
    const bool commas = setting("KPUseCommas");
    m_tags->setHint(commas ? qtTrId("KPTagsHintCommas") : qtTrId("KPTagsHint"), qtTrId("KPTags"));
    m_tags->entry()->installEventFilter(this);
    m_some = buttonRow(QT_TRID_NOOP("KPTagsOfSome"), column);
    m_suggestions = buttonRow(QT_TRID_NOOP("KPTagsSuggested"), column);
    m_groups = buttonRow(QT_TRID_NOOP("KPTagGroupsRecent"), column);
    column->addWidget(m_note);
    column->addStretch(1);
    auto *buttons = new QDialogButtonBox;
    auto *done = buttons->addButton(qtTrId("KPTagEditorDone"), QDialogButtonBox::AcceptRole);
    done->setAutoDefault(false);
    buttons->addButton(qtTrId("KPCancel"), QDialogButtonBox::RejectRole)->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::accepted, this, &XPTagEditorController::finish);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    column->addWidget(buttons);
}

// Showing.

QString XPTagEditorController::windowTitleForFileCount(qsizetype count,
                                                       const QString &withFirstFileNamed)
{
    if (count == 1)
        return qtTrId("XPTagHUDWindowTemplate").arg(XPPath::printable(withFirstFileNamed));
    return qtTrId("XPTagHUDMultipleDocsWindowTemplate").arg(QLocale().toString(count));
}

QString XPTagEditorController::ratingString(std::optional<double> rating)
{
    if (!rating)
        return qtTrId("XPRatingVarious");
    return *rating > 0 ? qtTrId("XPRated").arg(QLocale().toString(*rating)) : qtTrId("XPNotRated");
}

void XPTagEditorController::editTagsForFilePaths(const QStringList &paths)
{
    xpGuiThread.assertHere();
    if (isVisible())
        writeCommonTags();
    const int asked = ++m_asked;
    auto files = std::make_shared<KPCommonTags>();
    KPDocServices::current().runFileWork([files, paths] { *files = KPCommonTags::read(paths); },
                                         [self = QPointer(this), asked, files] {
                                             if (self && self->m_asked == asked)
                                                 self->editFiles(*files);
                                         });
}

void XPTagEditorController::editFiles(const KPCommonTags &files)
{
    m_files = files;
    m_takenFromAll.clear();
    m_newRating.reset();
    const QString first = files.paths.isEmpty() ? QString() : XPPath::fileName(files.paths.first());
    const QString title = windowTitleForFileCount(files.paths.size(), first);
    setWindowTitle(title);
    m_names->setText(fontMetrics().elidedText(title, Qt::ElideMiddle, 420));
    QString note;
    if (!files.unreadable.isEmpty())
        note = qtTrId("KPTagsLeftOut", static_cast<int>(files.unreadable.size()))
                   .arg(KPEditSummary::reason(files.unreadable.first()));
    else if (files.paths.size() > 1)
        note = setting("KPImportOnlyUpdateCommonTags") ? qtTrId("KPCommonTagsOnly")
                                                       : qtTrId("KPAllTagsReplaced");
    m_note->setText(note);
    m_note->setVisible(!note.isEmpty());
    m_tags->setEnabled(!files.paths.isEmpty());
    m_stars->setEnabled(!files.paths.isEmpty());
    m_tags->setTags(files.common);
    m_stars->setRating(files.rating.value_or(0));
    showRating();
    showSome();
    showGroups();
    clearRow(m_suggestions);
    suggest(files.paths);
    show();
    raise();
    activateWindow();
    m_tags->focusEntry();
}

void XPTagEditorController::showRating()
{
    m_rating->setText(ratingString(m_newRating ? m_newRating : m_files.rating));
}

void XPTagEditorController::showSome()
{
    constexpr qsizetype mostShown = 12;
    clearRow(m_some);
    for (const auto &some : m_files.some.first(std::min(mostShown, m_files.some.size()))) {
        QToolButton *button = addButton(m_some, some.tag);
        button->setText(
            qtTrId("KPTagOfSome").arg(XPPath::printable(some.tag), QLocale().toString(some.count)));
        button->setPopupMode(QToolButton::MenuButtonPopup);
        auto *menu = new QMenu(button);
        const QString tag = some.tag;
        menu->addAction(qtTrId("KPTagGiveToAll"), this, [this, tag] { m_tags->addTag(tag); });
        QAction *take = menu->addAction(qtTrId("KPTagTakeFromAll"));
        take->setCheckable(true);
        connect(take, &QAction::toggled, this, [this, button, tag](bool on) {
            QFont font = button->font();
            font.setStrikeOut(on);
            button->setFont(font);
            m_takenFromAll.removeAll(tag);
            if (on)
                m_takenFromAll.append(tag);
        });
        button->setMenu(menu);
        connect(button, &QToolButton::clicked, this, [this, tag] { m_tags->addTag(tag); });
    }
}

// Of one document: many differ too much.
void XPTagEditorController::suggest(const QStringList &paths)
{
    xpGuiThread.assertHere();
    if (paths.size() != 1 || !setting("KPShowSuggestionWindow"))
        return;
    auto found = std::make_shared<QStringList>();
    KPDocServices::current().runFileWork(
        [found, path = paths.first()] {
            *found = KPTagSuggestions::forFile(path, KPTagSuggestions::popularTags());
        },
        [self = QPointer(this), asked = m_asked, found] {
            if (self && self->m_asked == asked)
                self->showSuggestions(*found);
        });
}

void XPTagEditorController::showSuggestions(const QStringList &suggestions)
{
    constexpr qsizetype mostShown = 10;
    clearRow(m_suggestions);
    for (const QString &tag : suggestions.first(std::min(mostShown, suggestions.size()))) {
        QToolButton *button = addButton(m_suggestions, tag);
        connect(button, &QToolButton::clicked, this, [this, tag, button] {
            m_tags->addTag(tag);
            button->hide();
        });
    }
}

void XPTagEditorController::showGroups()
{
    clearRow(m_groups);
    for (const QStringList &group : KPRecentTagGroups::groups()) {
        QToolButton *button = addButton(m_groups, group.join(QStringLiteral(", ")));
        connect(button, &QToolButton::clicked, this, [this, group] {
            for (const QString &tag : group)
                m_tags->addTag(tag);
        });
        button->setContextMenuPolicy(Qt::ActionsContextMenu);
        auto *remove = new QAction(qtTrId("KPRemoveFromRecents"), button);
        connect(remove, &QAction::triggered, this, [this, group] {
            KPRecentTagGroups::removeGroup(group);
            showGroups();
        });
        button->addAction(remove);
    }
}

// Writing.

bool XPTagEditorController::writeCommonTags()
{
    const QString typed = m_tags->entry()->text();
    m_tags->entry()->clear();
    m_tags->addTag(typed);
    const QStringList after = m_tags->tags();
    QStringList before = m_files.common;
    for (const QString &tag : m_takenFromAll) {
        if (!after.contains(tag))
            before.append(tag);
    }
    if (!setting("KPImportOnlyUpdateCommonTags") && after != m_files.common) {
        for (const auto &some : m_files.some)
            before.append(some.tag);
    }
    KPFileEdit edit{m_files.paths, {}, m_newRating};
    if (before != after)
        edit.tags = {Karvex::removeDuplicateTags(before), after};
    m_newRating.reset();
    m_takenFromAll.clear();
    m_files.common = after;
    if (edit.paths.isEmpty() || (!edit.tags && !edit.rating))
        return false;
    Q_EMIT edited(edit);
    return true;
}

void XPTagEditorController::finish()
{
    writeCommonTags();
    accept();
}

void XPTagEditorController::keyPressEvent(QKeyEvent *event)
{
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && event->modifiers().testFlag(Qt::ControlModifier))
        finish();
    else if (!isReturn)
        QDialog::keyPressEvent(event);
}

bool XPTagEditorController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_tags->entry() && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool isReturn = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
        const bool isEmpty = m_tags->entry()->text().isEmpty();
        if (isReturn && (isEmpty || key->modifiers().testFlag(Qt::ControlModifier))) {
            finish();
            return true;
        }
        if (key->key() == Qt::Key_Escape && isEmpty) {
            reject();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void XPTagEditorController::closeEvent(QCloseEvent *event)
{
    UserDefaults::standard().setValue(frameKey, saveGeometry());
    QDialog::closeEvent(event);
}
