#include "KPDuplicatesWindow.h"

#include "KPDocServices.h"
#include "KPDuplicatesModel.h"
#include "XPFileSize.h"
#include "XPStrandedThreads.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

KPDuplicatesWindow::KPDuplicatesWindow(const QStringList &paths, QWidget *window)
    : QDialog(window), m_model(new KPDuplicatesModel(this)), m_text(new QLabel),
      m_bar(new QProgressBar), m_tree(new QTreeView)
{
    build();
    m_thread = std::thread([search = m_search, paths] {
        search->result = XPDuplicates::find(paths, [&search](qint64 done, qint64 total) {
            search->done = done;
            search->total = total;
            return !search->isStopAsked;
        });
        search->hasEnded = true;
    });
    connect(&m_timer, &QTimer::timeout, this, &KPDuplicatesWindow::look);
    m_timer.start(100ms);
}

KPDuplicatesWindow::~KPDuplicatesWindow()
{
    m_search->isStopAsked = true;
    if (m_thread.joinable())
        XPStrandedThreads::adopt(std::move(m_thread),
                                 [search = m_search] { return search->hasEnded.load(); });
}

void KPDuplicatesWindow::build()
{
    setWindowTitle(qtTrId("KPDuplicatesTitle"));
    setAttribute(Qt::WA_DeleteOnClose);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setText(qtTrId("KPDuplicatesSearching"));
    m_bar->setRange(0, 0);
    m_bar->setAccessibleName(qtTrId("KPDuplicatesSearching"));
    m_tree->setModel(m_model);
    m_tree->setHeaderHidden(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_tree->setTextElideMode(Qt::ElideMiddle);
    m_tree->setAccessibleName(qtTrId("KPDuplicatesTitle"));
    auto *buttons = new QDialogButtonBox;
    m_show = buttons->addButton(qtTrId("KPDuplicatesShow"), QDialogButtonBox::ActionRole);
    // Last: Tab would pass over it otherwise.
    buttons->addButton(qtTrId("KPDone"), QDialogButtonBox::RejectRole);
    m_show->setAutoDefault(false);
    m_show->setEnabled(false);
    connect(m_show, &QPushButton::clicked, this, &KPDuplicatesWindow::showInLibrary);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_tree, &QTreeView::activated, this, &KPDuplicatesWindow::showInLibrary);
    connect(m_tree->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &KPDuplicatesWindow::follow);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(24, 24, 24, 16);
    column->setSpacing(12);
    column->addWidget(m_text);
    column->addWidget(m_bar);
    column->addWidget(m_tree);
    column->addWidget(buttons);
    constexpr QSize usual(640, 480);
    resize(usual);
}

void KPDuplicatesWindow::look()
{
    // In thousandths, as bytes are more than a bar can count.
    constexpr int parts = 1000;
    const qint64 total = m_search->total;
    if (total > 0) {
        m_bar->setRange(0, parts);
        m_bar->setValue(static_cast<int>(static_cast<double>(m_search->done) * parts /
                                         static_cast<double>(total)));
    }
    if (!m_search->hasEnded)
        return;
    m_timer.stop();
    m_thread.join();
    showGroups(m_search->result);
    Q_EMIT searched();
}

void KPDuplicatesWindow::showGroups(const XPDuplicates::Result &result)
{
    m_bar->hide();
    m_model->setGroups(result.groups);
    m_tree->expandToDepth(0);
    QString text = result.groups.isEmpty()
                       ? qtTrId("KPDuplicatesNone")
                       : qtTrId("KPDuplicatesFound", static_cast<int>(result.groups.size()))
                             .arg(xpFileSizeInWords(result.bytesToFree()));
    if (!result.failures.isEmpty())
        text += u'\n' + qtTrId("KPDuplicatesUnread", static_cast<int>(result.failures.size()));
    m_text->setText(text);
}

QStringList KPDuplicatesWindow::chosen() const
{
    QStringList paths;
    for (const QModelIndex &index : m_tree->selectionModel()->selectedIndexes())
        paths += index.data(KPDuplicatesModel::PathsRole).toStringList();
    paths.removeDuplicates();
    return paths;
}

void KPDuplicatesWindow::follow()
{
    m_show->setEnabled(m_tree->selectionModel()->hasSelection());
}

void KPDuplicatesWindow::showInLibrary()
{
    if (const QStringList paths = chosen(); !paths.isEmpty())
        KPDocServices::current().revealInLibrary(paths);
}
