#include "KPPreferencesWindow.h"

#include "KPBackupSection.h"
#include "KPDocIcons.h"
#include "KPFileTypesSection.h"
#include "KPFolderSections.h"
#include "KPForgetting.h"
#include "KPIndexMonitor.h"
#include "KPIndexSection.h"
#include "KPLoginSection.h"
#include "KPLook.h"
#include "KPPreferencePage.h"
#include "KPSettingRow.h"
#include "KPWindowFrame.h"
#include "XPFactorySettings.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

using Page = XPSetting::Page;

static constexpr QSize usualSize{880, 640};
static constexpr int listWidth = 216;
static constexpr int listMargin = 24; // around the names of the pages
static const QString frameKey = QStringLiteral("KPPreferencesFrame");

namespace {

struct PageInfo
{
    Page page;
    const char *title;
    const char *symbol;
};

constexpr PageInfo pageInfos[] = {
    {Page::Library, QT_TRID_NOOP("KPPrefPageLibrary"), "folders"},
    {Page::Appearance, QT_TRID_NOOP("KPPrefPageAppearance"), "eye"},
    {Page::Kinds, QT_TRID_NOOP("KPPrefPageKinds"), "kinds"},
    {Page::Tags, QT_TRID_NOOP("KPPrefPageTags"), "tag"},
    {Page::Filing, QT_TRID_NOOP("KPPrefPageFiling"), "file-into"},
    {Page::DropZone, QT_TRID_NOOP("KPPrefPageDropZone"), "move-to"},
    {Page::Scanning, QT_TRID_NOOP("KPPrefPageScanning"), "scan"},
    {Page::Backup, QT_TRID_NOOP("KPPrefPageBackup"), "saved"},
    {Page::Index, QT_TRID_NOOP("KPPrefPageIndex"), "search"},
    {Page::Privacy, QT_TRID_NOOP("KPPrefPagePrivacy"), "hidden"},
};

} // namespace

KPPreferencesWindow::KPPreferencesWindow(Setup setup, QWidget *parent)
    : QWidget(parent, Qt::Window), m_setup(std::move(setup)), m_field(new QLineEdit),
      m_list(new QListWidget), m_pages(new QStackedWidget)
{
    setWindowTitle(qtTrId("KPPrefTitle"));
    setObjectName(QStringLiteral("KPPreferencesWindow"));
    KPWindowFrame::restore(*this, frameKey, usualSize);
    build();
    addPages();
    // With large letters the names of the pages are wider.
    m_list->setMinimumWidth(m_list->sizeHintForColumn(0) + listMargin);
    m_list->setCurrentRow(0);
    m_list->setFocus();
}

void KPPreferencesWindow::build()
{
    m_field->setPlaceholderText(qtTrId("KPPrefSearch"));
    m_field->setAccessibleName(qtTrId("KPPrefSearch"));
    m_field->setClearButtonEnabled(true);
    m_field->addAction(KPDocIcons::symbol(QStringLiteral("search")), QLineEdit::LeadingPosition);
    m_list->setAccessibleName(qtTrId("KPPrefPages"));
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setIconSize({16, 16});
    m_list->setSpacing(2);
    m_list->viewport()->setAutoFillBackground(false);
    auto *side = new QWidget;
    side->setBackgroundRole(QPalette::AlternateBase);
    side->setAutoFillBackground(true);
    side->setMinimumWidth(listWidth);
    auto *sideColumn = new QVBoxLayout(side);
    sideColumn->setContentsMargins(12, 16, 12, 12);
    sideColumn->setSpacing(12);
    sideColumn->addWidget(m_field);
    sideColumn->addWidget(m_list, 1);
    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(0);
    line->addWidget(side);
    line->addWidget(m_pages, 1);
    connect(m_field, &QLineEdit::textChanged, this, &KPPreferencesWindow::search);
    connect(m_list, &QListWidget::currentRowChanged, m_pages, &QStackedWidget::setCurrentIndex);
}

void KPPreferencesWindow::addPages()
{
    for (const PageInfo &info : pageInfos) {
        const bool hasSettings =
            std::any_of(XPFactorySettings::all().begin(), XPFactorySettings::all().end(),
                        [&](const XPSetting &setting) { return setting.page == info.page; });
        if ((!hasSettings && info.page != Page::Kinds) ||
            (info.page == Page::Index && !m_setup.index))
            continue;
        const QString title = qtTrId(info.title);
        auto *page = new KPPreferencePage(title);
        if (info.page == Page::Index)
            page->add(qtTrId("KPPrefIndexState"), new KPIndexStatusSection(*m_setup.index));
        addSettings(page, info.page);
        if (info.page == Page::Kinds)
            page->add(qtTrId("KPKindsHeading"), new KPFileTypesSection);
        else if (info.page == Page::Backup)
            addBackup(page);
        else if (info.page == Page::Index)
            addIndexTools(page);
        else if (info.page == Page::Privacy)
            addPrivacy(page);
        m_pages->addWidget(page);
        auto *item = new QListWidgetItem(KPDocIcons::symbol(QString::fromLatin1(info.symbol)),
                                         title, m_list);
        item->setData(Qt::UserRole, static_cast<int>(info.page));
        const QFontMetrics letters = m_list->fontMetrics();
        item->setSizeHint({letters.horizontalAdvance(title) + 16 + listMargin,
                           std::max(KPLook::controlHeight, letters.height() + 8)});
    }
}

void KPPreferencesWindow::addSettings(KPPreferencePage *page, Page which)
{
    for (const XPSetting &setting : XPFactorySettings::all()) {
        if (setting.page != which)
            continue;
        QWidget *part = *setting.text ? new KPSettingRow(setting) : makePlace(setting);
        if (part)
            page->add(qtTrId(setting.group), part);
    }
}

// For settings that take more than a control.
QWidget *KPPreferencesWindow::makePlace(const XPSetting &setting)
{
    using What = KPIndexListSection::What;
    if (setting.key == u"KPSearchFolders")
        return new KPSearchFoldersSection;
    if (setting.key == u"KPFiledDocumentsPath")
        return new KPManagedFolderSection(m_setup.index);
    if (setting.key == u"KPIndexRoots")
        return new KPIndexListSection(What::Roots, *m_setup.index);
    if (setting.key == u"KPIndexExclusions")
        return new KPIndexListSection(What::Rules, *m_setup.index);
    Q_ASSERT_X(false, "KPPreferencesWindow", "a setting without text and place");
    return nullptr;
}

void KPPreferencesWindow::addBackup(KPPreferencePage *page)
{
    m_backup = new KPBackupSection;
    page->add(qtTrId("KPPrefBackup"), m_backup);
    page->add(qtTrId("KPPrefHealing"), new KPHealedSection);
    connect(m_backup, &KPBackupSection::backupAsked, this, [this] { m_setup.backUp(); });
    connect(m_backup, &KPBackupSection::restoreAsked, this, [this] { m_setup.restore(this); });
}

void KPPreferencesWindow::addIndexTools(KPPreferencePage *page)
{
    page->add(qtTrId("KPPrefLogin"), new KPLoginSection);
    auto *part = new QWidget;
    auto *line = new QHBoxLayout(part);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(12);
    auto *text = new QLabel(qtTrId("KPPrefRebuildHint"));
    text->setWordWrap(true);
    auto *button = new QPushButton(qtTrId("KPPrefRebuild"));
    button->setAutoDefault(false);
    line->addWidget(text, 1);
    line->addWidget(button);
    connect(button, &QPushButton::clicked, this, [this] { m_setup.rebuildIndex(); });
    page->add(qtTrId("KPPrefRebuildTitle"), part);
}

void KPPreferencesWindow::addPrivacy(KPPreferencePage *page)
{
    for (const KPForgetting::Memory &memory : KPForgetting::memories())
        page->add(qtTrId("KPPrefRemembered"), KPForgetting::makeRow(memory));
}

void KPPreferencesWindow::showPage(Page page)
{
    m_field->clear();
    for (int row = 0; row < m_list->count(); ++row) {
        if (m_list->item(row)->data(Qt::UserRole).toInt() == static_cast<int>(page))
            m_list->setCurrentRow(row);
    }
}

void KPPreferencesWindow::showBackup(const QString &activity, const QString &problem)
{
    m_backup->showState(activity, problem);
}

// Pages without a hit step aside, and the first that has one is shown unless this one has.
void KPPreferencesWindow::search(const QString &words)
{
    int first = -1;
    bool isHere = false;
    for (int row = 0; row < m_pages->count(); ++row) {
        const bool isFound = static_cast<KPPreferencePage *>(m_pages->widget(row))->filter(words);
        m_list->item(row)->setHidden(!isFound);
        if (isFound && first < 0)
            first = row;
        isHere = isHere || (isFound && row == m_list->currentRow());
    }
    if (!isHere && first >= 0)
        m_list->setCurrentRow(first);
}

void KPPreferencesWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Find)) {
        m_field->setFocus(Qt::ShortcutFocusReason);
        m_field->selectAll();
    } else if (event->key() == Qt::Key_Escape && !m_field->text().isEmpty()) {
        m_field->clear();
    } else if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close)) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void KPPreferencesWindow::closeEvent(QCloseEvent *event)
{
    KPWindowFrame::save(*this, frameKey);
    QWidget::closeEvent(event);
}
