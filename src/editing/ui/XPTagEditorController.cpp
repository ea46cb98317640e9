#include "XPTagEditorController.h"

#include "KPButtonRow.h"
#include "KPDocServices.h"
#include "KPEditSummary.h"
#include "KPLook.h"
#include "KPTagSuggestions.h"
#include "KPWindowFrame.h"
#include "Karvex.h"
#include "UserDefaults.h"
#include "XPPath.h"
#include "XPStarsEditor.h"
#include "XPTagEntry.h"
#include "XPTagsTokenFieldController.h"

#include <QDialogButtonBox>
#include <QHideEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

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

XPTagEditorController::XPTagEditorController(QWidget *window, Form form)
    : QDialog(window, form == Form::Window ? Qt::Dialog : Qt::Tool), m_form(form),
      m_names(new QLabel), m_note(new QLabel), m_rating(new QLabel), m_stars(new XPStarsEditor),
      m_tags(new XPTagsEditor(XPTagsEditor::Purpose::Edit)),
      m_field(new XPTagsTokenFieldController(m_tags)),
      m_some(new KPButtonRow(qtTrId("KPTagsOfSome"))),
      m_suggestions(new KPButtonRow(qtTrId("KPTagsSuggested"))),
      m_groups(new KPButtonRow(qtTrId("KPTagGroupsRecent")))
{
    setObjectName(form == Form::Window  ? QStringLiteral("XPTagEditorWindow")
                  : form == Form::Panel ? QStringLiteral("XPTagEditorHUDWindow")
                                        : QStringLiteral("XPTagSearchWindow"));
    build();
    KPWindowFrame::restore(*this, frameKey(),
                           form == Form::Window  ? QSize(460, 340)
                           : form == Form::Panel ? QSize(340, 320)
                                                 : QSize(340, 160));
    connect(m_stars, &XPStarsEditor::rated, this, [this](int stars) {
        m_newRating = stars;
        showRating();
    });
}

XPTagEditorController::~XPTagEditorController() = default;

// Each window has a place of its own.
QString XPTagEditorController::frameKey() const
{
    return m_form == Form::Window ? QStringLiteral("XPTagsWindowFrame")
                                  : objectName() + QStringLiteral("Frame");
}

void XPTagEditorController::buildRating(QVBoxLayout *column)
{
    column->addWidget(m_names);
    auto *rating = new QHBoxLayout;
    rating->addWidget(m_stars);
    rating->addWidget(m_rating, 1);
    column->addLayout(rating);
}

void XPTagEditorController::build()
{
    const bool isSearch = m_form == Form::Search;
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 12);
    column->setSpacing(8);
    for (QLabel *label : {m_names, m_note, m_rating})
        label->setTextFormat(Qt::PlainText);
    m_names->setFont(KPLook::font(KPLook::Type::Title));
    m_note->setWordWrap(true);
    m_note->setForegroundRole(QPalette::PlaceholderText);
    m_rating->setForegroundRole(QPalette::PlaceholderText);
    buildRating(column);
    column->addWidget(caption(isSearch ? QT_TRID_NOOP("KPTagSearchLabel") : "KPTags", m_tags));
    column->addWidget(m_tags);
    m_tags->setHint(XPTagEntry::hint(), qtTrId("KPTags"));
    m_tags->entry()->installEventFilter(this);
    for (KPButtonRow *row : {m_some, m_suggestions, m_groups})
        column->addWidget(row);
    column->addWidget(m_note);
    column->addStretch(1);
    auto *buttons = new QDialogButtonBox;
    auto *done =
        buttons->addButton(isSearch ? qtTrId("KPTagSearchButton") : qtTrId("KPTagEditorDone"),
                           QDialogButtonBox::AcceptRole);
    done->setAutoDefault(false);
    if (m_form == Form::Panel) {
        auto *next = buttons->addButton(qtTrId("KPTagEditorNext"), QDialogButtonBox::ActionRole);
        next->setAutoDefault(false);
        connect(next, &QPushButton::clicked, this, [this] {
            writeCommonTags();
            Q_EMIT nextWanted();
        });
    }
    buttons->addButton(qtTrId("KPCancel"), QDialogButtonBox::RejectRole)->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::accepted, this, &XPTagEditorController::finish);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    column->addWidget(buttons);
    for (QWidget *widget : {static_cast<QWidget *>(m_names), static_cast<QWidget *>(m_rating),
                            static_cast<QWidget *>(m_stars), static_cast<QWidget *>(m_note)})
        widget->setVisible(!isSearch);
    if (isSearch)
        setWindowTitle(qtTrId("KPTagSearchTitle"));
}

// Showing.

QString XPTagEditorController::windowTitleForFileCount(qsizetype count,
                                                       const QString &withFirstFileNamed)
{
    if (count == 0)
        return qtTrId("KPTags");
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
    if (isVisible())
        writeCommonTags();
    read(paths, true);
}

void XPTagEditorController::follow(const QStringList &paths)
{
    if (!isVisible() || m_form != Form::Panel || paths == m_asked.paths)
        return;
    writeCommonTags();
    read(paths, false);
}

void XPTagEditorController::read(const QStringList &paths, bool takesFocus)
{
    xpGuiThread.assertHere();
    m_asked = {m_asked.number + 1, paths};
    auto files = std::make_shared<KPCommonTags>();
    KPDocServices::current().runFileWork(
        [files, paths] { *files = KPCommonTags::read(paths); },
        [self = QPointer(this), asked = m_asked.number, files, takesFocus] {
            if (!self || self->m_asked.number != asked)
                return;
            self->showFiles(*files);
            if (takesFocus)
                self->takeFocus();
        });
}

void XPTagEditorController::editFiles(const KPCommonTags &files)
{
    showFiles(files);
    takeFocus();
}

void XPTagEditorController::takeFocus()
{
    show();
    raise();
    activateWindow();
    m_tags->focusEntry();
}

void XPTagEditorController::askForTags()
{
    m_tags->setTags({});
    showGroups();
    takeFocus();
}

static QString noteOn(const KPCommonTags &files)
{
    if (!files.unreadable.isEmpty())
        return qtTrId("KPTagsLeftOut", static_cast<int>(files.unreadable.size()))
            .arg(KPEditSummary::reason(files.unreadable.first()));
    if (files.paths.isEmpty())
        return qtTrId("KPNothingSelected");
    if (files.paths.size() == 1)
        return {};
    return setting("KPImportOnlyUpdateCommonTags") ? qtTrId("KPCommonTagsOnly")
                                                   : qtTrId("KPAllTagsReplaced");
}

void XPTagEditorController::showFiles(const KPCommonTags &files)
{
    m_files = files;
    m_takenFromAll.clear();
    m_newRating.reset();
    const QString first = files.paths.isEmpty() ? QString() : XPPath::fileName(files.paths.first());
    const QString title = windowTitleForFileCount(files.paths.size(), first);
    setWindowTitle(title);
    m_names->setText(fontMetrics().elidedText(title, Qt::ElideMiddle, width() - 40));
    const QString note = noteOn(files);
    m_note->setText(note);
    m_note->setVisible(!note.isEmpty());
    m_tags->setEnabled(!files.paths.isEmpty());
    m_stars->setEnabled(!files.paths.isEmpty());
    m_tags->setTags(files.common);
    m_stars->setRating(files.rating.value_or(0));
    showRating();
    showSome();
    showGroups();
    m_suggestions->clear();
    suggest(files.paths);
}

void XPTagEditorController::showRating()
{
    m_rating->setText(m_files.paths.isEmpty()
                          ? QString()
                          : ratingString(m_newRating ? m_newRating : m_files.rating));
}

void XPTagEditorController::showSome()
{
    constexpr qsizetype mostShown = 12;
    m_some->clear();
    for (const auto &some : m_files.some.first(std::min(mostShown, m_files.some.size()))) {
        QToolButton *button = m_some->add(some.tag);
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
    if (paths.size() != 1)
        return;
    auto found = std::make_shared<QStringList>();
    KPDocServices::current().runFileWork(
        [found, path = paths.first()] {
            *found = KPTagSuggestions::forFile(path, KPTagSuggestions::popularTags());
        },
        [self = QPointer(this), asked = m_asked.number, found] {
            if (self && self->m_asked.number == asked)
                self->showSuggestions(*found);
        });
}

void XPTagEditorController::showSuggestions(const QStringList &suggestions)
{
    constexpr qsizetype mostShown = 10;
    m_suggestions->clear();
    for (const QString &tag : suggestions.first(std::min(mostShown, suggestions.size()))) {
        QToolButton *button = m_suggestions->add(tag);
        connect(button, &QToolButton::clicked, this, [this, tag, button] {
            m_tags->addTag(tag);
            button->hide();
        });
    }
}

void XPTagEditorController::showGroups()
{
    XPTagsTokenFieldController::rebuildFavoriteTagButtons(m_groups,
                                                          [this](const QStringList &tags) {
                                                              for (const QString &tag : tags)
                                                                  m_tags->addTag(tag);
                                                              m_tags->focusEntry();
                                                          });
}

// Writing.

bool XPTagEditorController::writeCommonTags()
{
    m_tags->takeTyped();
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
    if (m_form == Form::Search) {
        if (const QStringList tags = m_field->tags(); !tags.isEmpty())
            Q_EMIT searchWanted(tags);
    } else {
        writeCommonTags();
    }
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
        const bool isControl = key->modifiers().testFlag(Qt::ControlModifier);
        if (isReturn && isEmpty && !isControl && m_form == Form::Panel) {
            writeCommonTags();
            Q_EMIT nextWanted();
            return true;
        }
        if (isReturn && (isEmpty || isControl)) {
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

void XPTagEditorController::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous() && m_remembersPlace)
        KPWindowFrame::save(*this, frameKey());
    QDialog::hideEvent(event);
}
