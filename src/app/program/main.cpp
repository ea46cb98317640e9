#include "KPAppDelegate.h"
#include "KPAppearance.h"
#include "KPApplication.h"
#include "KPCommandLine.h"
#include "KPController.h"
#include "KPLogTail.h"
#include "KPScreenshot.h"
#include "XPApplicationBus.h"
#include "XPFileUrls.h"
#include "XPTranslations.h"

#include <QIcon>
#include <QProcess>
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

// To the instance that runs already.
static int handOver(XPApplicationBus *bus, const KPCommandLine &line,
                    const XPActivation &activation)
{
    QStringList urls = line.urls;
    for (const QString &folder : line.folders)
        urls.append(QString::fromLatin1(XPFileUrls::encoded(folder)));
    std::optional<XPError> error;
    if (line.searchText) {
        const QVariantList text =
            line.searchText->isEmpty() ? QVariantList() : QVariantList{*line.searchText};
        error = bus->askForAction(XPApplicationBus::searchAction, text, activation);
    } else if (line.filesClipboard) {
        error = bus->askForAction(XPApplicationBus::fileAction, {}, activation);
    } else if (!line.documentsAction.isEmpty()) {
        error = bus->askForAction(line.documentsAction, {line.urls}, activation);
    } else {
        error = bus->askToOpen(urls, activation);
    }
    if (error)
        return print(stderr,
                     QStringLiteral("murn: ") + qtTrId("KPNotAnswering").arg(error->message), 1);
    return 0;
}

static int run(KPApplication *application, const KPCommandLine &line,
               const XPActivation &activation)
{
    xpGuiThread.assertHere();
    XPApplicationBus bus;
    const bool isAlone = line.isNewInstance || !line.screenshot.isEmpty();
    if (!isAlone && bus.claim() == XPApplicationBus::Claim::Another)
        return handOver(&bus, line, activation);
    KPLogTail::install();
    QGuiApplication::setApplicationDisplayName(qtTrId("KPApplicationName"));
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/app/com.brindle.murn.svg")));
    const KPAppearance appearance(line.colours);
    KPAppDelegate delegate(line, isAlone ? nullptr : &bus);
    if (line.documentsAction.isEmpty())
        delegate.openUrls(line.urls, {}); // kept until there is a window
    delegate.applicationWillFinishLaunching();
    delegate.applicationDidFinishLaunching();
    application->setShouldTerminate([&delegate] { return delegate.applicationShouldTerminate(); });
    application->quitOnSignals();
    if (line.searchText)
        delegate.searchInMurnService(*line.searchText, {});
    else if (line.filesClipboard)
        delegate.createFiledFile({});
    else if (!line.documentsAction.isEmpty())
        delegate.documentsAsked(line.documentsAction, line.urls, {});
    if (!line.screenshot.isEmpty())
        new KPScreenshot(delegate.controller(), line.screenshot, line.selection); // the window's
    const int status = QApplication::exec();
    delegate.applicationWillTerminate();
    if (delegate.startsAgain())
        QProcess::startDetached(QCoreApplication::applicationFilePath(), {});
    return status;
}

// What needs no window is answered without a display.
static std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv)
{
    for (const QByteArray &argument : bytes(argc, argv)) {
        if (argument == "--")
            break;
        if (argument == "--help" || argument == "-h" || argument == "--version" || argument == "-v")
            return std::make_unique<QCoreApplication>(argc, argv);
    }
    return std::make_unique<KPApplication>(argc, argv);
}

// NOLINTNEXTLINE(bugprone-exception-escape): lack of memory or threads ends the start, no more
int main(int argc, char **argv)
{
    const auto activation = XPActivation::fromEnvironment();
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
    return run(static_cast<KPApplication *>(application.get()), *line, activation);
}
