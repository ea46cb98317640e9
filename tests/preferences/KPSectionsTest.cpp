#include "CommandScene.h"
#include "FiledFolder.h"
#include "IndexSettings.h"
#include "IndexSetup.h"
#include "KPBackupSection.h"
#include "KPDocServices.h"
#include "KPFolderSections.h"
#include "KPForgetting.h"
#include "KPHealing.h"
#include "KPIndexMonitor.h"
#include "KPIndexSection.h"
#include "KPRecentTagGroups.h"
#include "KPSearchFolderSetting.h"
#include "KPSearchFolders.h"
#include "Karvex.h"
#include "KarvexBackupFile.h"
#include "KarvexPrefs.h"
#include "MetadataIndex.h"
#include "XPAtomicFile.h"
#include "XPExtendedAttributes.h"
#include "XPRecentDestinations.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTreeWidget>
#include <unistd.h>

namespace {

// File work is done at once here, as in the shell.
class Sections : public FiledFolder
{
protected:
    Sections()
    {
        xpGuiThread.assertHere();
        said = ScriptedPrompts::install({});
        forgetSettings();
        QDir(XPFolders::documents()).removeRecursively();
    }
    ~Sections() override
    {
        xpGuiThread.assertHere();
        XPPrompts::install(nullptr);
        forgetSettings();
        UserDefaults::standard().remove(XPFiledDocuments::askKey);
    }

    static void forgetSettings()
    {
        for (const QString &key : {XPFiledDocuments::preferredPathKey, KPSearchFolderSetting::key,
                                   IndexSettings::rootsKey, IndexSettings::rulesKey})
            UserDefaults::standard().remove(key);
        XPFiledDocuments::rebuildFiledDocsPath();
    }
    QString folder(const char *name) const
    {
        QString path = m_folder.path(QString::fromUtf8(name));
        QDir().mkpath(path);
        return path;
    }
    static QPushButton *button(const QWidget &section, const QString &text)
    {
        for (QPushButton *each : section.findChildren<QPushButton *>()) {
            if (each->text() == text || each->accessibleName() == text)
                return each;
        }
        ADD_FAILURE() << text.toStdString();
        return nullptr;
    }
    static void click(const QWidget &section, const char *id)
    {
        QTest::mouseClick(button(section, qtTrId(id)), Qt::LeftButton);
    }
    // All that it says.
    static QString text(const QWidget &section)
    {
        QStringList texts;
        for (const QLabel *label : section.findChildren<QLabel *>()) {
            if (label->isVisibleTo(&section))
                texts.append(label->text());
        }
        return texts.join(u'\n');
    }
    static QListWidget *list(const QWidget &section) { return section.findChild<QListWidget *>(); }
    static void selectRow(const QWidget &section, int row)
    {
        list(section)->setCurrentRow(row, QItemSelectionModel::ClearAndSelect);
    }

    std::shared_ptr<ScriptedPrompts::Said> said;
};

} // namespace

TEST_F(Sections, TheManagedFolderIsMadeChosenAndReset)
{
    const QString make = qtTrId("KPPrefMakeFolder").arg(QStringLiteral("Filed Documents"));
    KPManagedFolderSection section(nullptr);
    section.setVisible(true);
    EXPECT_EQ(text(section), qtTrId("KPPrefNotFiled"));
    EXPECT_FALSE(button(section, qtTrId("KPPrefReset"))->isVisible());
    // Where the folder of documents should be is something else.
    QFile blocking(XPFolders::documents());
    ASSERT_TRUE(blocking.open(QIODevice::WriteOnly));
    QTest::mouseClick(button(section, make), Qt::LeftButton);
    ASSERT_EQ(said->alerts.size(), 1) << "it is said why nothing happened";
    EXPECT_TRUE(said->alerts[0].contains(u"~/Documents/Filed Documents: "));
    EXPECT_EQ(text(section), qtTrId("KPPrefNotFiled"));
    EXPECT_TRUE(button(section, make)->isVisible());

    ASSERT_TRUE(blocking.remove());
    QTest::mouseClick(button(section, make), Qt::LeftButton);
    EXPECT_EQ(text(section), u"Documents are filed in ~/Documents/Filed Documents.");
    EXPECT_FALSE(button(section, make)->isVisible());
    click(section, "KPPrefChooseFolder");
    chooseFile(section, folder("mine & yours"));
    EXPECT_TRUE(text(section).endsWith(u"/mine & yours.")) << text(section).toStdString();
    EXPECT_EQ(XPFiledDocuments::filedDocumentsRoot(), folder("mine & yours"));
    click(section, "KPPrefReset");
    EXPECT_EQ(text(section), u"Documents are filed in ~/Documents/Filed Documents.");
    EXPECT_EQ(said->alerts.size(), 1);
    // Somebody else chooses.
    XPFiledDocuments::setFiledDocumentsPreferredPath(folder("theirs"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return text(section).endsWith(u"/theirs."); }));
}

TEST_F(Sections, SearchFoldersAreAddedAndTheLastOneStays)
{
    KPSearchFolderSetting::setFolders({folder("one"), folder("two")});
    KPSearchFolders::instance().rebuildSearchFoldersList();
    KPSearchFoldersSection section;
    section.setVisible(true);
    click(section, "KPPrefAdd");
    chooseFile(section, folder("three"));
    EXPECT_EQ(KPSearchFolderSetting::folders(),
              (QStringList{folder("one"), folder("two"), folder("three")}));
    ASSERT_EQ(list(section)->count(), 3);
    // A folder that went while the dialog was open.
    click(section, "KPPrefAdd");
    auto *dialog = openDialog<QFileDialog>(section);
    ASSERT_TRUE(dialog);
    Q_EMIT dialog->fileSelected(m_folder.path(QStringLiteral("gone")));
    dialog->close();
    ASSERT_EQ(said->alerts.size(), 1);
    EXPECT_FALSE(said->alerts[0].contains(u"errno")) << said->alerts[0].toStdString();
    EXPECT_EQ(list(section)->count(), 3);

    list(section)->selectAll();
    EXPECT_FALSE(button(section, qtTrId("KPPrefRemove"))->isEnabled());
    QTest::keyClick(list(section), Qt::Key_Delete);
    EXPECT_EQ(list(section)->count(), 3) << "not all of them";
    section.activateWindow(); // the dialogs took that from it
    ASSERT_TRUE(QTest::qWaitForWindowActive(&section));
    list(section)->setFocus();
    for (int left = 2; left > 0; --left) {
        selectRow(section, 0);
        QTest::keyClick(list(section), Qt::Key_Delete);
        EXPECT_EQ(list(section)->count(), left);
    }
    selectRow(section, 0);
    QTest::keyClick(list(section), Qt::Key_Delete);
    EXPECT_EQ(KPSearchFolderSetting::folders(), QStringList{folder("three")});
}

TEST_F(Sections, TheIndexTakesRulesThatAreOnesAndFoldersThatAreThere)
{
    const TestFolder store;
    IndexSetup setup;
    setup.path = store.path(QStringLiteral("index.sqlite"));
    setup.roots = {folder("indexed")};
    const auto index = MetadataIndex::open(setup);
    KPIndexMonitor monitor(*index);
    IndexSettings::setRules({QStringLiteral("build")});
    KPIndexListSection rules(KPIndexListSection::What::Rules, monitor);
    rules.show();
    auto *field = rules.findChild<QLineEdit *>();
    const auto type = [&](const char *text) {
        field->setText(QLatin1String(text));
        QTest::keyClick(field, Qt::Key_Return);
    };
    for (const char *wrong : {"a/b", "!", "!!x", "!a/b"}) {
        type(wrong);
        EXPECT_TRUE(text(rules).contains(qtTrId("KPPrefRuleWrong"))) << wrong;
        EXPECT_EQ(field->text(), QLatin1String(wrong)) << "to be corrected";
    }
    type("");
    type("~/private");
    EXPECT_FALSE(text(rules).contains(qtTrId("KPPrefRuleWrong")));
    EXPECT_TRUE(field->text().isEmpty());
    type("~/private");
    type("!kept");
    EXPECT_EQ(IndexSettings::rules(),
              (QStringList{QStringLiteral("build"), QStringLiteral("~/private"),
                           QStringLiteral("!kept")}));
    selectRow(rules, 0);
    click(rules, "KPPrefRemove");
    EXPECT_EQ(IndexSettings::rules().size(), 2);
    click(rules, "KPPrefReset");
    EXPECT_EQ(IndexSettings::rules(), IndexSettings::defaultRules());
    EXPECT_EQ(list(rules)->count(), IndexSettings::defaultRules().size());

    IndexSettings::setRoots({folder("indexed")});
    KPIndexListSection roots(KPIndexListSection::What::Roots, monitor);
    roots.show();
    ASSERT_EQ(
        ::symlink("indexed", XPPath::encode(m_folder.path(QStringLiteral("link"))).constData()), 0);
    click(roots, "KPPrefAdd");
    chooseFile(roots, m_folder.path(QStringLiteral("link")));
    EXPECT_EQ(list(roots)->count(), 1) << "the same folder";
    click(roots, "KPPrefAdd");
    chooseFile(roots, folder("other"));
    EXPECT_EQ(IndexSettings::roots(), (QStringList{folder("indexed"), folder("other")}));
    EXPECT_EQ(list(roots)->count(), 2);
}

TEST_F(Sections, WhatIsForgottenIsGone)
{
    const QString searches = QStringLiteral("KPRecentSearches");
    UserDefaults::standard().setValue(searches, PropertyValue(QStringList{QStringLiteral("x")}));
    EXPECT_FALSE(KarvexPrefs::updatePrefsRecentTags({}, {QStringLiteral("secret")}));
    KPRecentTagGroups::addNewTagsToRecentGroups({QStringLiteral("a"), QStringLiteral("b")});
    XPRecentDestinations::updatePrefsForRecentDestinations(folder("to"));
    const auto left = [&] {
        return int(!UserDefaults::standard().value(searches).strings().isEmpty()) +
               int(!KarvexPrefs::recentTags().isEmpty()) +
               int(!KPRecentTagGroups::groups().isEmpty()) +
               int(!XPRecentDestinations::paths().isEmpty());
    };
    int kept = 4;
    ASSERT_EQ(left(), kept);
    for (const KPForgetting::Memory &memory : KPForgetting::memories()) {
        const std::unique_ptr<QWidget> row(KPForgetting::makeRow(memory));
        row->show();
        QPushButton *forget = button(*row, qtTrId("KPPrefForgetNamed").arg(qtTrId(memory.text)));
        ASSERT_TRUE(forget);
        QTest::mouseClick(forget, Qt::LeftButton);
        EXPECT_FALSE(forget->isEnabled());
        EXPECT_EQ(left(), --kept) << memory.text << ": this one alone";
    }
    EXPECT_EQ(kept, 0);
}

TEST_F(Sections, ABackupThatCannotBeReadIsNotNone)
{
    const QString path = KarvexBackupFile::defaultPath();
    ASSERT_FALSE(XPFolders::create(XPPath::folder(path)));
    const auto says = [&](const QString &expected) {
        KPBackupSection section;
        section.show();
        EXPECT_TRUE(QTest::qWaitFor([&] { return text(section).startsWith(expected); }))
            << text(section).toStdString();
        EXPECT_TRUE(button(section, qtTrId("KPPrefBackUpNow"))->isEnabled());
    };
    (void)QFile::remove(path);
    says(qtTrId("KPPrefNoBackup"));
    KarvexBackupFile::Records records;
    for (const QString &name : {QStringLiteral("/a"), QStringLiteral("/b")})
        records.insert(name, {name, {QStringLiteral("tax")}, 0, PropertyValue::Date{1000}, {}});
    const QByteArray bytes = *KarvexBackupFile::encode(records);
    ASSERT_FALSE(XPAtomicFile::write(path, bytes));
    says(QStringLiteral("The backup holds 2 documents."));
    ASSERT_FALSE(XPAtomicFile::write(path, bytes.left(bytes.size() / 2)));
    says(QStringLiteral("The backup cannot be read: "));
    ASSERT_TRUE(QFile::remove(path));

    KPBackupSection section;
    section.showState(QStringLiteral("at work"), QStringLiteral("no room"));
    EXPECT_FALSE(button(section, qtTrId("KPPrefBackUpNow"))->isEnabled()) << "not twice at once";
    EXPECT_TRUE(text(section).endsWith(u"at work\nno room"));
}

// --- Files that lost their tags

namespace {

KPHealing lost(qint64 number, const QString &path, KPHealing::State state)
{
    const QByteArray tags = [] {
        const TestFolder folder;
        const QString file = folder.file(QStringLiteral("tagged"));
        EXPECT_FALSE(Karvex::setUserTags(QStringList{QStringLiteral("tax")}, file));
        return XPExtendedAttributes::read(file,
                                          QStringLiteral("com.apple.metadata:kMDItemKXUserTags"))
            .valueOr({})
            .value_or(QByteArray());
    }();
    KPHealing healing;
    healing.number = number;
    healing.path = path;
    healing.state = state;
    healing.attributes = {{QStringLiteral("kMDItemKXUserTags"), tags}};
    return healing;
}

QStringList tagsOf(const QString &path)
{
    return Karvex::getUserTags(path).valueOr({QStringLiteral("(unreadable)")});
}

} // namespace

TEST_F(Sections, TagsThatWereLostAreGivenBackAsTheUserSays)
{
    using State = KPHealing::State;
    const QString one = file("one\n.txt");
    const QString two = file("two.txt");
    const QString gone = file("gone.txt");
    ASSERT_FALSE(KPHealingLog::change([&](QList<KPHealing> &cases) {
        cases = {lost(1, one, State::Pending), lost(2, gone, State::Pending),
                 lost(3, two, State::Undone)};
    }));
    ASSERT_EQ(::unlink(XPPath::encode(gone).constData()), 0);
    KPHealedSection section;
    section.resize(600, 400);
    section.setVisible(true);
    const auto *rows = section.findChild<QTreeWidget *>();
    const auto select = [&](const QString &name) {
        rows->selectionModel()->clear();
        for (QTreeWidgetItem *item : rows->findItems(name, Qt::MatchExactly))
            item->setSelected(true);
        return !rows->selectedItems().isEmpty();
    };
    ASSERT_EQ(rows->topLevelItemCount(), 3);
    EXPECT_TRUE(text(section).startsWith(u"The tags of 2 files were put aside"));
    EXPECT_EQ(rows->topLevelItem(2)->text(0), u"two.txt") << "those that wait come first";
    EXPECT_FALSE(button(section, qtTrId("KPHealedAccept"))->isEnabled());

    ASSERT_TRUE(select(QStringLiteral("one\\n.txt")));
    click(section, "KPHealedAccept");
    EXPECT_EQ(tagsOf(one), QStringList{QStringLiteral("tax")});
    ASSERT_TRUE(select(QStringLiteral("one\\n.txt")));
    EXPECT_FALSE(button(section, qtTrId("KPHealedAccept"))->isEnabled());
    click(section, "KPHealedUndo");
    EXPECT_EQ(tagsOf(one), QStringList());
    ASSERT_TRUE(select(QStringLiteral("two.txt")));
    EXPECT_FALSE(button(section, qtTrId("KPHealedUndo"))->isEnabled());
    click(section, "KPHealedAccept");
    EXPECT_EQ(tagsOf(two), QStringList{QStringLiteral("tax")});
    EXPECT_TRUE(text(section).startsWith(u"The tags of 1 file were put aside"));

    ASSERT_TRUE(select(QStringLiteral("gone.txt")));
    click(section, "KPHealedAccept");
    EXPECT_TRUE(text(section).contains(u"gone.txt: ")) << text(section).toStdString();
    ASSERT_TRUE(select(QStringLiteral("gone.txt")));
    click(section, "KPHealedUndo");
    EXPECT_EQ(text(section), qtTrId("KPHealedAllDone")) << "no problem any more";
}

TEST_F(Sections, ALogThatCannotBeReadIsNotAnEmptyOne)
{
    QDir().mkpath(XPPath::folder(KPHealingLog::path()));
    QFile log(KPHealingLog::path());
    ASSERT_TRUE(log.open(QIODevice::WriteOnly));
    log.write("no log");
    log.close();
    KPHealedSection section;
    section.setVisible(true);
    EXPECT_NE(text(section), qtTrId("KPHealedNone"));
    EXPECT_FALSE(text(section).isEmpty());
    ASSERT_TRUE(log.remove());
    section.setVisible(false);
    section.setVisible(true);
    EXPECT_EQ(text(section), qtTrId("KPHealedNone"));
}
