// murn-library: answers what the desktop asks of the library, without a window. Started by the
// session bus when somebody asks, and ends when nobody has for a while; with --stay it is the user
// service that keeps the index from login on.
#include "CagedImporter.h"
#include "IndexSettings.h"
#include "KPIndexedTypes.h"
#include "KPLibraryAdaptors.h"
#include "KPTagHealer.h"
#include "KarvexPrefs.h"
#include "MetadataIndex.h"
#include "XPFactorySettings.h"
#include "XPTranslations.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QSocketNotifier>
#include <QTimer>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <sys/signalfd.h>

using namespace std::chrono_literals;

static constexpr auto idle = 3min;
static const char *const serviceName = "com.brindle.murn.Library";

// The event loop hears of these, so that the index is closed at a clean place. Before any thread.
static int endingSignals()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&set, signal);
    ::pthread_sigmask(SIG_BLOCK, &set, nullptr);
    return ::signalfd(-1, &set, SFD_CLOEXEC);
}

static bool publish(QDBusConnection &bus, const char *place, QObject *object)
{
    return bus.registerObject(QString::fromLatin1(place), object, QDBusConnection::ExportAdaptors);
}

int main(int argc, char **argv)
{
    const int signals = endingSignals();
    QCoreApplication application(argc, argv);
    const bool stays = application.arguments().contains(QStringLiteral("--stay"));
    XPFactorySettings::registerAll();
    KarvexPrefs::chooseDomain();
    XPTranslations::install();
    CagedImporter::install(IndexSettings::storePath());
    const auto index = MetadataIndex::open();
    const KPIndexedTypes types(index->source());
    const KPTagHealer healer(*index);

    QSocketNotifier ending(signals, QSocketNotifier::Read);
    QObject::connect(&ending, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &application, &QCoreApplication::quit);
    if (!stays)
        timer.start(idle);

    KPLibraryAnswers answers(index->source());
    KPLibraryObject library(answers);
    KPLibraryObject shell(answers);
    KPLibraryObject runner(answers);
    new KPLibraryAdaptor(&library);
    new KPShellSearchAdaptor(&shell);
    new KPRunnerAdaptor(&runner);
    for (KPLibraryObject *object : {&library, &shell, &runner}) {
        QObject::connect(object, &KPLibraryObject::used, &timer, [&timer, stays] {
            if (!stays)
                timer.start(idle);
        });
    }
    // First the objects: whoever sees the name may call at once.
    QDBusConnection bus = QDBusConnection::sessionBus();
    const bool isPublished = publish(bus, "/com/brindle/murn/Library", &library) &&
                             publish(bus, "/com/brindle/murn/SearchProvider", &shell) &&
                             publish(bus, "/com/brindle/murn/Runner", &runner) &&
                             bus.registerService(QString::fromLatin1(serviceName));
    if (!isPublished && !stays) {
        std::fputs("murn-library: nobody can ask: there is no session bus, or another one runs\n",
                   stderr);
        return 1;
    }
    return QCoreApplication::exec();
}
