#include "XPImageCaptureCoreDevice.h"

#include "TestHome.h"
#include "UserDefaults.h"
#include "XPNotificationCenter.h"
#include "XPTranslations.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QTimer>
#include <csignal>
#include <gtest/gtest.h>

using Device = XPImageCaptureCoreDevice;
using namespace std::chrono_literals;

namespace {

class Controller : public Device::ScanController
{
public:
    void addPageImagePath(const QString &path) override { pages.append(path); }
    void scanProgress(int percent) override { progress.append(percent); }
    void scannerFailed(const QString &title, const QString &text, bool isEmpty) override
    {
        failures.append(title + u'|' + text);
        wasEmpty = isEmpty;
    }

    QStringList pages;
    QStringList failures;
    QList<int> progress;
    bool wasEmpty = false;
};

// Runs the event loop until the notification, or for far longer than that can take.
bool comes(const QString &notification)
{
    QEventLoop loop;
    const XPObservation observation = XPNotificationCenter::instance().addObserver(
        notification, [&](const XPNotification &) { loop.quit(); });
    QTimer::singleShot(30s, &loop, [&] { loop.exit(1); });
    return loop.exec() == 0;
}

struct Scene
{
    explicit Scene(const QByteArray &program = MURN_SCANNER) : device(&controller, program)
    {
        static const bool hasTexts = [] {
            XPTranslations::install(QLocale(QLocale::English));
            return true;
        }();
        EXPECT_TRUE(hasTexts);
        UserDefaults &defaults = UserDefaults::standard();
        for (const QString &key : {Device::foundScannersKey, Device::selectedScannerKey,
                                   Device::selectedPaperKey, Device::duplexKey})
            defaults.remove(key);
    }

    bool finds()
    {
        device.findScanners();
        return comes(Device::listChangedNotification);
    }
    // Whether the scan ended; with a page or without.
    bool scans(const QString &path)
    {
        device.startScan(path);
        return !device.nowScanning() || comes(Device::completeNotification);
    }
    static void select(const QString &title)
    {
        UserDefaults::standard().setValue(Device::selectedScannerKey, title);
    }

    Controller controller;
    Device device;
};

// A virtual scanner of the scanner library's own.
class VirtualScanner
{
public:
    explicit VirtualScanner(const QByteArray &options = {})
    {
        (void)m_folder.file(QStringLiteral("dll.conf"), "test\n");
        (void)m_folder.file(QStringLiteral("test.conf"), "number_of_devices 2\n" + options);
        qputenv("SANE_CONFIG_DIR", QFile::encodeName(m_folder.path()));
    }
    ~VirtualScanner() { qunsetenv("SANE_CONFIG_DIR"); }
    VirtualScanner(const VirtualScanner &) = delete;
    VirtualScanner &operator=(const VirtualScanner &) = delete;
    QString path(const QString &name) const { return m_folder.path(name); }

private:
    TestFolder m_folder;
};

} // namespace

TEST(ImageCaptureCoreDevice, PagesComeFromEachPartOfARealDriver)
{
    const VirtualScanner scanner;
    Scene scene;
    ASSERT_TRUE(scene.finds());
    const QString flatbed = QStringLiteral("Noname frontend-tester (flatbed)");
    const QString feeder = QStringLiteral("Noname frontend-tester (document feeder)");
    EXPECT_EQ(scene.device.scannerNames(),
              (QStringList{flatbed, feeder, QStringLiteral("Noname frontend-tester 2 (flatbed)"),
                           QStringLiteral("Noname frontend-tester 2 (document feeder)")}));
    EXPECT_EQ(Device::functionalUnitsFromPrefsForScanner(QStringLiteral("Noname frontend-tester")),
              (QList<int>{0, 3}));

    // Business cards, so that pages are small.
    UserDefaults::standard().setValue(Device::selectedPaperKey, PropertyValue::integer(53));
    scene.device.setSettings({.resolution = 75, .mode = QStringLiteral("Gray")});
    Scene::select(flatbed);
    for (const QString &ending :
         {QStringLiteral("tiff"), QStringLiteral("jpg"), QStringLiteral("png")}) {
        const QString path = scanner.path(QStringLiteral("page.") + ending);
        ASSERT_TRUE(scene.scans(path));
        EXPECT_EQ(scene.controller.pages.value(scene.controller.pages.size() - 1), path);
        EXPECT_GT(QFile(path).size(), 0);
        EXPECT_FALSE(QFile::exists(path + QStringLiteral(".part")));
    }
    EXPECT_EQ(scene.controller.progress.last(), 100);
    // What fits on a glass of 200 by 200 mm: the whole of it first.
    EXPECT_EQ(scene.device.paperSizesForCurrentScanner(), (QList<int>{0, 7, 53}));

    // The virtual feeder holds ten sheets; the first scanner has counted what its glass took too.
    Scene::select(scene.device.scannerNames().last());
    scene.controller.pages.clear();
    for (int page = 0; page < 11 && !scene.controller.wasEmpty; ++page)
        ASSERT_TRUE(scene.scans(scanner.path(QStringLiteral("%1.tiff").arg(page))));
    EXPECT_EQ(scene.controller.pages.size(), 10);
    EXPECT_TRUE(scene.controller.wasEmpty);
    // A feeder takes all of its area where the chosen paper, US Letter, does not fit.
    EXPECT_EQ(scene.device.paperSizesForCurrentScanner(), (QList<int>{0, 7, 53}));

    // A place where nothing can be written is said, and the next page works.
    scene.controller.failures.clear();
    Scene::select(flatbed);
    ASSERT_TRUE(scene.scans(scanner.path(QStringLiteral("missing/page.tiff"))));
    EXPECT_EQ(scene.controller.failures.size(), 1);
    ASSERT_TRUE(scene.scans(scanner.path(QStringLiteral("again.tiff"))));
    EXPECT_TRUE(QFile::exists(scanner.path(QStringLiteral("again.tiff"))));
    scene.device.releaseScanners();
}

TEST(ImageCaptureCoreDevice, ADriverThatEndedBetweenTwoPagesIsStartedAgain)
{
    const VirtualScanner scanner;
    Scene scene;
    ASSERT_TRUE(scene.finds());
    UserDefaults::standard().setValue(Device::selectedPaperKey, PropertyValue::integer(53));
    scene.device.setSettings({.resolution = 75, .mode = QStringLiteral("Gray")});
    Scene::select(scene.device.scannerNames().first());
    ASSERT_TRUE(scene.scans(scanner.path(QStringLiteral("1.png"))));
    QFile children(QStringLiteral("/proc/thread-self/children"));
    ASSERT_TRUE(children.open(QIODevice::ReadOnly));
    const int helper = children.readAll().simplified().split(' ').last().toInt();
    ASSERT_GT(helper, 0);
    ASSERT_EQ(::kill(helper, SIGKILL), 0);
    while (::kill(helper, 0) == 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    ASSERT_TRUE(scene.scans(scanner.path(QStringLiteral("2.png"))));
    EXPECT_EQ(scene.controller.pages.size(), 2);
    EXPECT_TRUE(scene.controller.failures.isEmpty());
}

TEST(ImageCaptureCoreDevice, DriversThatGoWrongAreSurvived)
{
    struct Case
    {
        const char *fault;
        const char *failure; // what is said of a page
    };
    const Case cases[] = {
        {"crash", "Acme S1|"},
        {"empty", "Acme S1|out of documents"},
        {"error", "Acme S1|Error during I/O You might try turning the scanner on and off again."}};
    for (const Case &each : cases) {
        SCOPED_TRACE(each.fault);
        qputenv("MURN_TEST_SCANNER_FAULT", each.fault);
        Scene scene(MURN_TEST_SCANNER);
        ASSERT_TRUE(scene.finds());
        // Two drivers offer one device.
        EXPECT_EQ(scene.device.scannerNames(), QStringList{QStringLiteral("Acme S1 (flatbed)")});
        Scene::select(QStringLiteral("Acme S1 (flatbed)"));
        ASSERT_TRUE(scene.scans(QStringLiteral("unused.tiff")));
        ASSERT_EQ(scene.controller.failures.size(), 1);
        EXPECT_TRUE(scene.controller.failures.first().startsWith(QLatin1String(each.failure)))
            << scene.controller.failures.first().toStdString();
        EXPECT_FALSE(scene.device.nowScanning());
        EXPECT_EQ(scene.controller.wasEmpty, qstrcmp(each.fault, "empty") == 0);
    }
    // One that dies while it is looked for or opened leaves a list, if an empty one.
    for (const char *fault : {"list", "open"}) {
        SCOPED_TRACE(fault);
        qputenv("MURN_TEST_SCANNER_FAULT", fault);
        Scene scene(MURN_TEST_SCANNER);
        ASSERT_TRUE(scene.finds());
        EXPECT_TRUE(scene.device.scannerNames().isEmpty());
        EXPECT_TRUE(scene.controller.failures.isEmpty());
    }
    // One that hangs is given up after a stop.
    qputenv("MURN_TEST_SCANNER_FAULT", "hang");
    Scene scene(MURN_TEST_SCANNER);
    ASSERT_TRUE(scene.finds());
    Scene::select(QStringLiteral("Acme S1 (flatbed)"));
    scene.device.startScan(QStringLiteral("unused.tiff"));
    while (!scene.device.scanInProgress())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    scene.device.cancelScan();
    ASSERT_TRUE(comes(Device::completeNotification));
    EXPECT_EQ(scene.controller.failures.size(), 1);
    qunsetenv("MURN_TEST_SCANNER_FAULT");
}

TEST(ImageCaptureCoreDevice, KnowsPapersAndNamesOfParts)
{
    EXPECT_EQ(Device::paperSizeLocalized(0), QStringLiteral("All"));
    EXPECT_EQ(Device::paperSizeLocalized(2), Device::paperSizeLocalized(29));
    EXPECT_EQ(Device::paperSizeLocalized(36), QStringLiteral("J-B2,"));
    EXPECT_EQ(Device::paperSizeLocalized(53), QStringLiteral("Bus. Card"));
    for (const int none : {-1, 8, 54, 59, 79, 1000})
        EXPECT_EQ(Device::paperSizeLocalized(none), QStringLiteral("Unknown")) << none;
    EXPECT_EQ(Device::sizeInMMForPaper(1), QSizeF(210, 297));
    EXPECT_NEAR(Device::sizeInMMForPaper(3).height(), 279.4, 0.01);
    EXPECT_TRUE(Device::sizeInMMForPaper(0).isEmpty());
    Scene scene;
    EXPECT_EQ(scene.device.paperSizesForCurrentScanner(), (QList<int>{0, 1, 11, 3, 4, 9, 6}));
    EXPECT_FALSE(scene.device.selectedScanner());
    ASSERT_TRUE(scene.scans(QStringLiteral("unused.tiff")));
    EXPECT_EQ(scene.controller.failures.size(), 1); // no scanner
}
