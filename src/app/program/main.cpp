#include "CagedImporter.h"
#include "IndexSettings.h"
#include "KPAppServices.h"
#include "KPAppearance.h"
#include "KPBadgeCache.h"
#include "KPCommandLine.h"
#include "KPController.h"
#include "KPDocCache.h"
#include "KPDocIcons.h"
#include "KPDocPrefs.h"
#include "KPFileTypeRegistry.h"
#include "KPFilingUpkeep.h"
#include "KPIndexMonitor.h"
#include "KPIndexedTypes.h"
#include "KPProgress.h"
#include "KPPrompts.h"
#include "KPQuickLook.h"
#include "KPScreenshot.h"
#include "KPSearchFolders.h"
#include "KPSearcher.h"
#include "KPTagBackup.h"
#include "KPTagHealer.h"
#include "KPTagName.h"
#include "KPThreadedSearcher.h"
#include "Karvex.h"
#include "KarvexPrefs.h"
#include "UserDefaults.h"
#include "XPFactorySettings.h"
#include "XPFiledDocuments.h"
#include "XPLog.h"
#include "XPMoveRecovery.h"
#include "XPTranslations.h"

#include <QApplication>
#include <QIcon>
#include <QScopeGuard>
#include <cstdio>
#include <memory>

static QByteArrayList bytes(int argc, char **argv)
{
    QByteArrayList arguments;
    for (int number = 0; number < argc; ++number)
        arguments.append(argv[number]);
    return arguments;
}

static int print(std::FILE *stream, const QString &text, int status)
{
    std::fprintf(stream, "%s\n", qUtf8Printable(text.trimmed()));
    return status;
}

static void describeApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("murn"));
    QCoreApplication::setApplicationVersion(QStringLiteral(MURN_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("com.brindle.murn"));
}

static void setUpServices()
{
    KPTagName::intializeGlobals();
    KPFileTypeRegistry::instance().readFileTypesPlist();
    XPFactorySettings::registerAll();
    setXpDebugLogging(UserDefaults::standard().boolValue(QStringLiteral("KPDebugLogging")));
    KarvexPrefs::chooseDomain();
    Karvex::registerUsualKXAttributes();
    KPDocIcons::registerIcons();
}

// The user may have the reading of documents stand still, with the setting "KPImportPaused".
static XPObservation followImportPause(ImportPause &pause)
{
    const auto follow = [&pause](const PropertyValue &value) {
        pause.set(ImportPause::Asked, value.boolValue());
    };
    follow(UserDefaults::standard().value(QStringLiteral("KPImportPaused")));
    return UserDefaults::standard().addObserver(QStringLiteral("values.KPImportPaused"), follow);
}

static int run(const KPCommandLine &line)
{
    setUpServices();
    QGuiApplication::setApplicationDisplayName(qtTrId("KPApplicationName"));
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/app/com.brindle.murn.svg")));
    const KPAppearance appearance(line.colours);
    xpGuiThread.assertHere();
    ImportManners manners;
    const XPObservation pause = followImportPause(manners.pause());
    CagedImporter::install(IndexSettings::storePath(), &manners);
    const auto index = MetadataIndex::open();
    const KPTagHealer healer(*index);
    KPDocCache::intializeGlobals();
    const KPIndexedTypes types(index->source());
    KPDoc::startMetaDataSearching(index->source());
    KPQuickLook::initializeGlobals(KPQuickLook::usualSetup(&manners.pause()));
    KPBadgeCache::instance().setFolders(KPBadgeCache::readOnlyFolder(),
                                        KPBadgeCache::writableFolder());
    const auto looks = qScopeGuard([] {
        xpGuiThread.assertHere();
        KPQuickLook::shutDown();
    });
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &KPQuickLook::instance(),
                     [](Qt::ApplicationState state) {
                         xpGuiThread.assertHere();
                         if (state != Qt::ApplicationActive)
                             KPQuickLook::updateCachedPrefs();
                     });
    KPIndexMonitor monitor(*index);
    KPSearchFolders &folders = KPSearchFolders::instance();
    folders.setIndex(index.get());
    folders.startObserving();
    QObject::connect(&monitor, &KPIndexMonitor::changed, &monitor,
                     [&] { folders.updateIndexAvailability(monitor.status().roots); });
    KPController controller(index->source(), line.folders, &monitor);
    XPPrompts::install(std::make_unique<KPPrompts>(&controller));
    auto services = std::make_unique<KPAppServices>();
    QObject::connect(services.get(), &KPAppServices::revealAsked, &controller,
                     &KPController::showDocuments);
    QObject::connect(services.get(), &KPAppServices::infoAsked, &controller,
                     &KPController::showInformation);
    QObject::connect(services.get(), &KPAppServices::pathMoved, &controller.searcher(),
                     &KPSearcher::pathChanged);
    KPDocServices::install(std::move(services));
    KPDocServices::current().runFileWork([] { (void)XPMoveRecovery::run(); }, [] {});
    KPTagBackup backup(index->source());
    QObject::connect(&backup, &KPTagBackup::changed, &controller,
                     [&] { controller.showBackup(backup.activity(), backup.problem()); });
    XPProgress::install(std::make_unique<KPProgress>(&controller));
    const KPFilingUpkeep upkeep;
    controller.show();
    if (!line.screenshot.isEmpty())
        new KPScreenshot(&controller, line.screenshot, line.selection); // the controller's
    const int status = QApplication::exec();
    folders.stopObserving();
    folders.setIndex(nullptr);
    XPProgress::install(nullptr); // asks what is shown there to stop
    KPThreadedSearcher::terminate();
    if (!KPThreadedSearcher::waitForSearchThreads(std::chrono::seconds(12)))
        qCWarning(xpLog) << "a search does not end";
    KPDocServices::install(nullptr); // ends when the file calls asked for are done
    XPFiledDocuments::cleanup();
    KPDoc::stopMetaDataSearching();
    for (const auto &error :
         {KPFileTypeRegistry::instance().writeFileTypesPlist(), KPDocPrefs::saveState()}) {
        if (error)
            qCWarning(xpLog).noquote() << error->message;
    }
    return status;
}

// What needs no window is answered without a display.
static std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv)
{
    for (const QByteArray &argument : bytes(argc, argv)) {
        if (argument == "--help" || argument == "-h" || argument == "--version" || argument == "-v")
            return std::make_unique<QCoreApplication>(argc, argv);
    }
    return std::make_unique<QApplication>(argc, argv);
}

// NOLINTNEXTLINE(bugprone-exception-escape): lack of memory or threads ends the start, no more
int main(int argc, char **argv)
{
    describeApplication();
    const auto application = makeApplication(argc, argv); // takes Qt's own options out
    XPTranslations::install();
    const auto line = KPCommandLine::parse(bytes(argc, argv));
    if (!line)
        return print(stderr, QStringLiteral("murn: ") + line.error().message, 2);
    switch (line->action) {
    case KPCommandLine::Action::ShowHelp:
        return print(stdout, KPCommandLine::helpText(), 0);
    case KPCommandLine::Action::ShowVersion:
        return print(stdout, QStringLiteral("murn ") + QStringLiteral(MURN_VERSION), 0);
    case KPCommandLine::Action::ShowWindow:
        break;
    }
    return run(*line);
}
