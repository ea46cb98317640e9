#include "XPScanController.h"

#include "Karvex.h"
#include "TestHome.h"
#include "UserDefaults.h"
#include "XPFiledDocuments.h"
#include "XPFolders.h"
#include "XPPrompts.h"
#include "XPScanProfile.h"
#include "XPScannedPages.h"
#include "XPTagsEditor.h"
#include "XPTranslations.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QInputDialog>
#include <QListWidget>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

namespace {

// Answers every question with the button of that number.
class Prompts : public XPPrompts
{
public:
    explicit Prompts(int button) : m_button(button) {}
    void ask(const Question &question, std::function<void(int)> answer) override
    {
        asked = question.title;
        answer(m_button);
    }
    void alert(const QString &title, const QString &text) override { alerts.append(title + text); }

    static inline QString asked;
    static inline QStringList alerts;

private:
    const int m_button;
};

struct Scene
{
    Scene()
    {
        static const bool hasTexts = [] {
            XPTranslations::install(QLocale(QLocale::English));
            return true;
        }();
        EXPECT_TRUE(hasTexts);
        (void)scanner.file(QStringLiteral("dll.conf"), "test\n");
        qputenv("SANE_CONFIG_DIR", QFile::encodeName(scanner.path()));
        UserDefaults::standard().setValue(QStringLiteral("KPSelectedPaper"),
                                          PropertyValue::integer(53));
        QDir().mkpath(XPFolders::documents() + QStringLiteral("/Filed Documents"));
        XPFiledDocuments::rebuildFiledDocsPath();
        open();
    }
    ~Scene()
    {
        controller.reset();
        XPPrompts::install(nullptr);
        QDir(XPScannedPages::folderStoragePath()).removeRecursively();
    }
    Scene(const Scene &) = delete;
    Scene &operator=(const Scene &) = delete;

    void open()
    {
        controller = std::make_unique<XPScanController>(
            XPScanController::Hooks{[this](const QString &path) { filed.append(path); },
                                    [] { return QStringList(); }, MURN_SCANNER});
        controller->show();
    }
    QPushButton *button(const char *text) const
    {
        for (auto *each : controller->findChildren<QPushButton *>()) {
            if (each->text() == qtTrId(text))
                return each;
        }
        return nullptr;
    }
    QAction *tool(const char *name) const
    {
        return controller->findChild<QAction *>(QLatin1String(name));
    }
    QString firstPage() const
    {
        const QString folder = XPScannedPages::folderStoragePath();
        return folder + u'/' + QDir(folder).entryList({QStringLiteral("*.tiff")}).value(0);
    }
    int pages() const { return controller->findChild<QListWidget *>()->count(); }
    QComboBox *list(const char *name) const
    {
        for (auto *each : controller->findChildren<QComboBox *>()) {
            if (each->accessibleName() == qtTrId(name))
                return each;
        }
        return nullptr;
    }
    // By the menu beside the profiles, as a user does.
    void saveProfile(const QString &name) const
    {
        for (auto *each : controller->findChildren<QToolButton *>()) {
            if (each->accessibleName() != qtTrId("KPScanProfileMenu"))
                continue;
            Q_EMIT each->menu()->aboutToShow();
            each->menu()->actions().constFirst()->trigger();
            auto *dialog = controller->findChild<QInputDialog *>();
            dialog->setTextValue(name);
            dialog->accept();
        }
    }
    bool hasScanner() const
    {
        const auto *popup = list("KPScanScanner");
        return QTest::qWaitFor([&] { return popup->isEnabled(); }, 20'000);
    }
    bool scan() const
    {
        const int wanted = pages() + 1;
        QTest::mouseClick(button("KPScanPage"), Qt::LeftButton);
        return QTest::qWaitFor(
            [&] { return pages() == wanted && button("KPScanPage")->isEnabled(); }, 20'000);
    }

    TestFolder scanner;
    QStringList filed;
    std::unique_ptr<XPScanController> controller;
};

} // namespace

TEST(ScanController, PaperBecomesATaggedDocument)
{
    Scene scene;
    ASSERT_TRUE(scene.hasScanner());
    ASSERT_TRUE(scene.scan());
    ASSERT_TRUE(scene.scan());
    scene.controller->findChild<XPTagsEditor *>()->addTag(QStringLiteral("paper"));
    QTest::keyClick(scene.controller.get(), Qt::Key_R, Qt::ControlModifier);
    // The program ends without a word: all of it is there again.
    scene.controller.reset();
    scene.open();
    ASSERT_EQ(scene.pages(), 2);
    auto *tags = scene.controller->findChild<XPTagsEditor *>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return tags->tags().size() == 1; }));
    scene.controller->findChild<XPTagsEditor *>()->addTag(QStringLiteral("bill"));
    QTest::mouseClick(scene.button("KPScanDone"), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !scene.filed.isEmpty(); }, 20'000));
    const QString path = scene.filed.first();
    EXPECT_TRUE(XPFiledDocuments::pathIsInFiledDocuments(path));
    EXPECT_TRUE(XPFiledDocuments::isManaged(path));
    EXPECT_EQ(Karvex::getUserTags(path).valueOr({}),
              (QStringList{QStringLiteral("paper"), QStringLiteral("bill")}));
    EXPECT_FALSE(scene.controller->isVisible());
    EXPECT_EQ(QDir(XPScannedPages::folderStoragePath())
                  .entryList({QStringLiteral("*.tiff"), QStringLiteral("*.pdf")})
                  .size(),
              0);
}

TEST(ScanController, OneDocumentFollowsTheOther)
{
    Scene scene;
    ASSERT_TRUE(scene.hasScanner());
    EXPECT_FALSE(scene.button("KPScanNextDocument")->isEnabled()) << "there is no page yet";
    for (qsizetype document = 1; document <= 2; ++document) {
        ASSERT_TRUE(scene.scan());
        scene.controller->findChild<XPTagsEditor *>()->addTag(QString::number(document));
        QTest::mouseClick(scene.button("KPScanNextDocument"), Qt::LeftButton);
        ASSERT_TRUE(QTest::qWaitFor([&] { return scene.filed.size() == document; }, 20'000));
        EXPECT_TRUE(scene.controller->isVisible());
        EXPECT_EQ(scene.pages(), 0);
    }
    EXPECT_EQ(Karvex::getUserTags(scene.filed.last()).valueOr({}),
              QStringList{QStringLiteral("2")});
}

TEST(ScanController, APileBecomesSeveralDocuments)
{
    const auto picture = [](const QString &folder, int number, bool isBlank) {
        QImage image(200, 300, QImage::Format_RGB32);
        image.fill(Qt::white);
        if (!isBlank)
            QPainter(&image).fillRect(20, 20, 160, 200, Qt::black);
        QString path = folder + QStringLiteral("/%1.png").arg(number);
        EXPECT_TRUE(image.save(path));
        return path;
    };
    const TestFolder folder;
    {
        XPScannedPages pages;
        int number = 0;
        for (const bool isBlank : {true, false, false, true, true, false, true}) {
            const QImage image(picture(folder.path(), number, isBlank));
            ASSERT_FALSE(pages.addPageImage(image));
            pages.markBlank(number++, isBlank);
        }
    }
    UserDefaults::standard().setValue(XPScanProfile::separatesKey, PropertyValue::boolean(true));
    Scene scene;
    ASSERT_EQ(scene.pages(), 7);
    QTest::mouseClick(scene.button("KPScanDone"), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !scene.controller->isVisible(); }, 20'000));
    UserDefaults::standard().remove(XPScanProfile::separatesKey);
    EXPECT_EQ(scene.filed.size(), 2);
    EXPECT_EQ(scene.pages(), 0);
    EXPECT_EQ(QDir(XPScannedPages::folderStoragePath())
                  .entryList({QStringLiteral("*.tiff"), QStringLiteral("*.pdf")})
                  .size(),
              0);
}

TEST(ScanController, ProfilesKeepWhatIsChosen)
{
    Scene scene;
    auto *mode = scene.list("KPScanColours");
    auto *profiles = scene.list("KPScanProfile");
    const auto choose = [](QComboBox *list, int row) {
        list->setCurrentIndex(row);
        Q_EMIT list->activated(row);
    };
    choose(mode, 2);
    const QString name = QStringLiteral("Bills & more");
    ASSERT_FALSE(XPScanProfile::ofSettings().save(name));
    choose(mode, 0);
    EXPECT_EQ(XPScanProfile::ofSettings().mode, QStringLiteral("Color"));
    ASSERT_EQ(profiles->findText(name), 0);
    choose(profiles, 0);
    EXPECT_EQ(mode->currentIndex(), 2);
    EXPECT_EQ(XPScanProfile::ofSettings().mode, QStringLiteral("Lineart"));
    ASSERT_FALSE(XPScanProfile::remove(name));
    EXPECT_EQ(profiles->count(), 0);
    EXPECT_FALSE(XPScanProfile::named(name));
}

TEST(ScanController, AProfileKeepsThePartOfTheScanner)
{
    Scene scene;
    ASSERT_TRUE(scene.hasScanner());
    auto *scanners = scene.list("KPScanScanner");
    auto *profiles = scene.list("KPScanProfile");
    const auto choose = [](QComboBox *list, int row) {
        list->setCurrentIndex(row);
        Q_EMIT list->activated(row);
    };
    const auto rowOf = [scanners](int unit) {
        return scanners->findText(XPImageCaptureCoreDevice::stringFromScanner(
            QStringLiteral("Noname frontend-tester"), unit));
    };
    const int feeder = rowOf(XPImageCaptureCoreDevice::DocumentFeeder);
    const int flatbed = rowOf(XPImageCaptureCoreDevice::Flatbed);
    ASSERT_TRUE(feeder >= 0 && flatbed >= 0) << qPrintable(scanners->itemText(0));
    choose(scanners, feeder);
    XPScanProfile ofShell;
    ofShell.pages = 2;
    ASSERT_FALSE(ofShell.save(QStringLiteral("Pile")));
    scene.saveProfile(QStringLiteral("Pile"));
    EXPECT_EQ(XPScanProfile::named(QStringLiteral("Pile")).value_or(XPScanProfile()).pages, 2);
    choose(scanners, flatbed);
    ASSERT_EQ(profiles->findText(QStringLiteral("Pile")), 0);
    choose(profiles, 0);
    EXPECT_EQ(scanners->currentIndex(), feeder);
    EXPECT_EQ(UserDefaults::standard().stringValue(XPImageCaptureCoreDevice::selectedScannerKey),
              scanners->itemText(feeder));
    ASSERT_FALSE(XPScanProfile::remove(QStringLiteral("Pile")));
}

TEST(ScanController, QuittingWithPagesAsks)
{
    Scene scene;
    std::optional<bool> proceeds;
    const auto quit = [&] { scene.controller->askToQuit([&](bool answer) { proceeds = answer; }); };
    quit();
    EXPECT_EQ(proceeds, true); // nothing to lose
    scene.controller->show();
    ASSERT_TRUE(scene.hasScanner());
    ASSERT_TRUE(scene.scan());

    XPPrompts::install(std::make_unique<Prompts>(2));
    quit();
    EXPECT_EQ(proceeds, false);
    EXPECT_EQ(Prompts::asked, qtTrId("KPSaveScanTitle"));
    EXPECT_EQ(scene.pages(), 1);
    scene.controller->close();
    EXPECT_TRUE(scene.controller->isVisible());

    XPPrompts::install(std::make_unique<Prompts>(1));
    quit();
    EXPECT_EQ(proceeds, true);
    EXPECT_EQ(scene.pages(), 0);
    EXPECT_FALSE(scene.controller->isVisible());
}

TEST(ScanController, ToolsChangeThePageAndAreTakenBack)
{
    Scene scene;
    ASSERT_TRUE(scene.hasScanner());
    ASSERT_TRUE(scene.scan());
    auto *view = scene.controller->findChild<XPScanImageView *>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return view->accessibleName() == u"Page 1"; }));
    scene.tool("ZLCrop")->trigger();
    EXPECT_EQ(view->mode(), XPScanImageView::Mode::Crop);
    QTest::keyClick(view, Qt::Key_Left, Qt::ShiftModifier); // the corner, by one part in a hundred
    EXPECT_NEAR(view->cropRect().width(), 0.99, 1e-9);
    auto *proportion = scene.list("KPScanProportion");
    ASSERT_TRUE(proportion->isVisible());
    proportion->setCurrentIndex(1); // A4
    Q_EMIT proportion->activated(1);
    const QSizeF page = XPScannedPages::rendered(scene.firstPage(), {}).size();
    const QSizeF frame(view->cropRect().width() * page.width(),
                       view->cropRect().height() * page.height());
    EXPECT_NEAR(std::max(frame.width(), frame.height()) / std::min(frame.width(), frame.height()),
                297.0 / 210, 0.01);
    QTest::keyClick(view, Qt::Key_Escape);
    EXPECT_EQ(view->mode(), XPScanImageView::Mode::Show);
    EXPECT_TRUE(scene.controller->isVisible());
    scene.tool("ZLStraighten")->trigger();
    // A line that falls by 45 parts in 1000.
    QSignalSpy lines(view, &XPScanImageView::lineDrawn);
    const QPoint from(100, 200);
    QTest::mousePress(view, Qt::LeftButton, {}, from);
    QTest::mouseMove(view, from + QPoint(200, 9));
    QTest::mouseRelease(view, Qt::LeftButton, {}, from + QPoint(200, 9));
    ASSERT_EQ(lines.size(), 1);
    EXPECT_NEAR(lines.first().first().toDouble(), 2.577, 0.01);
    QTest::mouseClick(scene.button("KPScanApply"), Qt::LeftButton);
    QAction *undo = nullptr;
    for (QAction *action : scene.controller->findChildren<QAction *>()) {
        if (action->shortcut() == QKeySequence(QKeySequence::Undo))
            undo = action;
    }
    ASSERT_TRUE(undo);
    EXPECT_TRUE(undo->isEnabled());
    undo->trigger();
    EXPECT_FALSE(undo->isEnabled());
}
