#include "KPRestoreWindow.h"

#include "KPEditSummary.h"
#include "KPLook.h"
#include "KPRestoreModel.h"
#include "KarvexBackupFile.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

static constexpr QSize usualSize{900, 560};
static constexpr qsizetype notesShown = 5; // of each kind

KPRestoreWindow::KPRestoreWindow(IndexSource &source, QWidget *parent)
    : QDialog(parent), m_run(source), m_model(new KPRestoreModel(this)), m_text(new QLabel),
      m_notes(new QLabel), m_list(new QTreeView), m_progress(new QProgressBar),
      m_all(new QCheckBox(qtTrId("KPRestoreAll"))),
      m_other(new QPushButton(qtTrId("KPRestoreOther"))), m_restore(new QPushButton),
      m_close(new QPushButton(qtTrId("KPCancel")))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::WindowModal);
    setWindowTitle(qtTrId("KPRestoreTitle"));
    resize(usualSize);
    build();
    connect(m_all, &QCheckBox::clicked, m_model, &KPRestoreModel::choose);
    connect(m_model, &KPRestoreModel::chosenChanged, this, &KPRestoreWindow::updateButton);
    connect(m_other, &QPushButton::clicked, this, &KPRestoreWindow::chooseBackup);
    connect(m_restore, &QPushButton::clicked, this, &KPRestoreWindow::restore);
    connect(m_close, &QPushButton::clicked, this, &QDialog::reject);
    connect(&m_run, &KPRestoreRun::finished, this, &KPRestoreWindow::finished);
    connect(&m_run, &KPRestoreRun::progressed, this, [this](qsizetype done, qsizetype total) {
        m_progress->setRange(0, 1000);
        m_progress->setValue(static_cast<int>(done * 1000 / std::max<qsizetype>(total, 1)));
    });
    look(KarvexBackupFile::defaultPath());
}

void KPRestoreWindow::build()
{
    auto *title = new QLabel(qtTrId("KPRestoreTitle"));
    title->setFont(KPLook::font(KPLook::Type::Title));
    for (QLabel *label : {m_text, m_notes}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    m_list->setModel(m_model);
    m_list->setAccessibleName(qtTrId("KPRestoreList"));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAlternatingRowColors(true);
    m_list->setTextElideMode(Qt::ElideMiddle);
    QHeaderView *header = m_list->header();
    header->setStretchLastSection(true);
    for (const int width : {220, 200, 210})
        header->resizeSection(header->logicalIndex(width == 220 ? 0 : width == 200 ? 1 : 2), width);
    m_progress->setTextVisible(false);
    m_progress->setAccessibleName(qtTrId("KPRestoreTitle"));
    for (QPushButton *button : {m_other, m_close})
        button->setAutoDefault(false);
    m_restore->setDefault(true);

    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addWidget(m_all);
    buttons->addStretch(1);
    buttons->addWidget(m_other);
    buttons->addWidget(m_close);
    buttons->addWidget(m_restore);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(24, 24, 24, 16);
    column->setSpacing(12);
    for (QWidget *part : std::initializer_list<QWidget *>{title, m_text, m_progress})
        column->addWidget(part);
    column->addWidget(m_list, 1);
    column->addWidget(m_notes);
    column->addLayout(buttons);
}

void KPRestoreWindow::showWork(bool isWorking)
{
    m_progress->setRange(0, 0);
    m_progress->setVisible(isWorking);
    m_list->setEnabled(!isWorking);
    m_other->setEnabled(!isWorking);
    updateButton();
}

void KPRestoreWindow::updateButton()
{
    const auto chosen = static_cast<int>(m_model->chosenCount());
    m_all->setVisible(m_model->rowCount() > 0);
    m_all->setEnabled(!m_run.isRunning());
    m_all->setChecked(chosen == m_model->rowCount());
    m_restore->setEnabled(chosen > 0 && !m_run.isRunning());
    m_restore->setText(chosen > 0 ? qtTrId("KPRestoreFiles", chosen) : qtTrId("KPRestoreNothing"));
}

void KPRestoreWindow::look(const QString &backup)
{
    m_backup = backup;
    m_model->setChanges({});
    m_notes->hide();
    m_text->setText(
        qtTrId("KPRestoreLooking").arg(XPPath::printable(XPFolders::abbreviateWithTilde(backup))));
    m_run.preview(backup);
    showWork(true);
}

void KPRestoreWindow::chooseBackup()
{
    auto *dialog = new QFileDialog(this, qtTrId("KPRestoreOther"), XPPath::folder(m_backup));
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilter(qtTrId("KPRestoreFilter") + QStringLiteral(" (*.plist)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, &KPRestoreWindow::look);
    dialog->open();
}

void KPRestoreWindow::restore()
{
    m_run.restore(m_backup, m_model->chosen());
    m_text->setText(qtTrId("KPRestoreWorking"));
    showWork(true);
}

void KPRestoreWindow::finished(const KarvexRestore::Result &result, bool wasPreview)
{
    if (wasPreview)
        showPreview(result);
    else
        showRestored(result);
    showWork(false);
}

static void addSome(QStringList &notes, const QString &note, qsizetype number)
{
    if (number < notesShown)
        notes.append(note);
    else if (number == notesShown)
        notes.append(QStringLiteral("…"));
}

// What is left alone, and why.
static QString notesOf(const KarvexRestore::Result &result)
{
    QStringList notes;
    if (result.missing > 0)
        notes.append(qtTrId("KPRestoreMissing", static_cast<int>(result.missing)));
    qsizetype number = 0;
    for (const KarvexRestore::Several &several : result.several) {
        const QString name = XPPath::printable(XPPath::fileName(several.recordedAt));
        addSome(notes, qtTrId("KPRestoreSeveral").arg(name), number++);
    }
    number = 0;
    for (const XPError &failure : result.failures)
        addSome(notes,
                XPPath::printable(XPFolders::abbreviateWithTilde(failure.path)) +
                    QStringLiteral(": ") + KPEditSummary::reason(failure),
                number++);
    return notes.join(u'\n');
}

void KPRestoreWindow::showPreview(const KarvexRestore::Result &result)
{
    const QString notes = notesOf(result);
    m_notes->setText(notes);
    m_notes->setVisible(!notes.isEmpty());
    m_model->setChanges(result.changes);
    const auto count = static_cast<int>(result.changes.size());
    if (result.error && result.error->kind == XPError::Kind::NotFound)
        m_text->setText(qtTrId("KPRestoreNoBackup"));
    else if (result.error)
        m_text->setText(qtTrId("KPRestoreBadBackup").arg(KPEditSummary::reason(*result.error)));
    else
        m_text->setText(count > 0 ? qtTrId("KPRestorePreview", count)
                                  : qtTrId("KPRestoreNoDifference"));
}

void KPRestoreWindow::showRestored(const KarvexRestore::Result &result)
{
    showPreview(result);
    m_model->setChanges({});
    m_text->setText(qtTrId("KPRestoreDone", static_cast<int>(result.changes.size())));
    m_close->setText(qtTrId("KPDone"));
}
