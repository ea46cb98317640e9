#include "KPFolderSections.h"

#include "KPDocServices.h"
#include "KPIndexMonitor.h"
#include "KPListEditor.h"
#include "KPSearchFolderSetting.h"
#include "KPSearchFolders.h"
#include "UserDefaults.h"
#include "XPFiledDocuments.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QFileDialog>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

// --- Search folders

static XPObservation followSetting(const QString &key, const std::function<void()> &act)
{
    return UserDefaults::standard().addObserver(QStringLiteral("values.") + key,
                                                [act](const PropertyValue &) { act(); });
}

static QString addSearchFolder(const QString &folder)
{
    xpGuiThread.assertHere();
    // It says itself what is wrong, and the list follows the setting.
    KPSearchFolders::instance().addSearchFolderAction(folder, [](bool) {});
    return {};
}

static void removeSearchFolders(const QStringList &folders)
{
    xpGuiThread.assertHere();
    for (const QString &folder : folders)
        KPSearchFolders::instance().removeSearchFolder(folder);
}

KPSearchFoldersSection::KPSearchFoldersSection(QWidget *parent) : QWidget(parent)
{
    const QString key = KPSearchFolderSetting::key;
    m_list =
        new KPListEditor(qtTrId("KPPrefSearchFolders"), qtTrId("KPPrefSearchFoldersHint"),
                         {.entries = &KPSearchFolderSetting::folders,
                          .add = &addSearchFolder,
                          .remove = &removeSearchFolders,
                          .isFactory = [key] { return !UserDefaults::standard().isSaved(key); },
                          .reset = [key] { UserDefaults::standard().remove(key); },
                          .keepsOne = true});
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_list);
    m_observation = followSetting(key, [this] { m_list->refresh(); });
}

// --- The managed folder

static const QString usualName = QStringLiteral("Filed Documents");

KPManagedFolderSection::KPManagedFolderSection(KPIndexMonitor *index, QWidget *parent)
    : QWidget(parent), m_index(index), m_text(new QLabel),
      m_make(new QPushButton(qtTrId("KPPrefMakeFolder").arg(usualName))),
      m_reset(new QPushButton(qtTrId("KPPrefReset")))
{
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    auto *other = new QPushButton(qtTrId("KPPrefChooseFolder"));
    auto *line = new QHBoxLayout;
    for (QPushButton *button : {m_make, other, m_reset}) {
        button->setAutoDefault(false);
        line->addWidget(button);
    }
    line->addStretch(1);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(m_text);
    column->addLayout(line);
    connect(other, &QPushButton::clicked, this, &KPManagedFolderSection::choose);
    connect(m_make, &QPushButton::clicked, this, [this] {
        const QString usual = XPFolders::documents() + u'/' + usualName;
        auto error = std::make_shared<std::optional<XPError>>();
        change(
            [usual, error] {
                *error = XPFolders::create(usual);
                if (!*error)
                    XPFiledDocuments::setFiledDocumentsPreferredPath(usual);
                XPFiledDocuments::createFiledDocumentsFolder();
            },
            [usual, error] {
                xpGuiThread.assertHere();
                if (*error)
                    XPPrompts::current().alert(
                        qtTrId("KPPrefFolderNotMade"),
                        XPPath::printable(XPFolders::abbreviateWithTilde(usual)) +
                            QStringLiteral(": ") + (*error)->reason());
            });
    });
    connect(m_reset, &QPushButton::clicked, this, [this] {
        UserDefaults::standard().remove(XPFiledDocuments::preferredPathKey);
        change([] { XPFiledDocuments::rebuildFiledDocsPath(); });
    });
    m_make->hide();
    m_reset->hide();
    m_observation = followSetting(XPFiledDocuments::preferredPathKey, [this] { look(); });
    look();
}

void KPManagedFolderSection::choose()
{
    auto *dialog = new QFileDialog(this, qtTrId("KPPrefChooseFolder"), XPFolders::documents());
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &folder) {
        auto root = std::make_shared<QString>();
        change(
            [folder, root] {
                XPFiledDocuments::setFiledDocumentsPreferredPath(folder);
                *root = XPFiledDocuments::filedDocumentsRootIfPresent();
            },
            [this, root] {
                if (m_index) // what is filed there is to be found, on another disk too
                    m_index->addFolder(*root);
            });
    });
    dialog->open();
}

void KPManagedFolderSection::change(std::function<void()> work, std::function<void()> done)
{
    xpGuiThread.assertHere();
    KPDocServices::current().runFileWork(std::move(work),
                                         [self = QPointer(this), done = std::move(done)] {
                                             if (!self)
                                                 return;
                                             if (done)
                                                 done();
                                             self->look();
                                         });
}

void KPManagedFolderSection::look()
{
    xpGuiThread.assertHere();
    auto root = std::make_shared<QString>();
    KPDocServices::current().runFileWork(
        [root] {
            if (XPFiledDocuments::usesFiledDocuments())
                *root = XPFiledDocuments::filedDocumentsRootIfPresent();
        },
        [root, self = QPointer(this)] {
            if (self)
                self->show(*root);
        });
}

void KPManagedFolderSection::show(const QString &root)
{
    m_text->setText(
        root.isEmpty()
            ? qtTrId("KPPrefNotFiled")
            : qtTrId("KPPrefFiledIn").arg(XPPath::printable(XPFolders::abbreviateWithTilde(root))));
    m_make->setVisible(root.isEmpty());
    m_reset->setVisible(UserDefaults::standard().isSaved(XPFiledDocuments::preferredPathKey));
}
