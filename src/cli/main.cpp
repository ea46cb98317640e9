// murnctl: tags, ratings and searches from the shell.
#include "CagedImporter.h"
#include "IndexSettings.h"
#include "KPCommandOutput.h"
#include "Karvex.h"
#include "KarvexPrefs.h"
#include "UserDefaults.h"
#include "XPFactorySettings.h"
#include "XPPath.h"
#include "XPTranslations.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <algorithm>
#include <array>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <langinfo.h>
#include <memory>

static constexpr std::array commands = {
    &kpTagsCommand,       &kpTagCommand,      &kpTagRenameCommand,     &kpTagDeleteCommand,
    &kpRateCommand,       &kpCommentCommand,  &kpFindCommand,          &kpBookmarksCommand,
    &kpInfoCommand,       &kpTypesCommand,    &kpQueryCommand,         &kpFileCommand,
    &kpManageCommand,     &kpUnmanageCommand, &kpPasteCommand,         &kpBackupCommand,
    &kpRestoreCommand,    &kpHealedCommand,   &kpMirrorCommand,        &kpCaptureCommand,
    &kpDuplicatesCommand, &kpExportCommand,   &kpImportArchiveCommand, &kpImportCommand,
    &kpThumbnailCommand,  &kpScanCommand,     &kpOcrCommand,           &kpCombineCommand,
    &kpOpenCommand,       &kpRevealCommand,   &kpIndexCommand,         &kpDefaultsCommand};

// A closed standard stream must not let the next file that is opened take its number.
static void keepStandardStreamsTaken()
{
    while (true) {
        const int descriptor = ::open("/dev/null", O_RDONLY);
        if (descriptor < 0 || descriptor > 2) {
            if (descriptor > 2)
                ::close(descriptor);
            return;
        }
    }
}

// Qt wants UTF-8 and complains on standard error about everything else.
static void chooseUtf8()
{
    // NOLINTBEGIN(concurrency-mt-unsafe): there is no other thread yet
    std::setlocale(LC_ALL, "");
    if (std::strcmp(::nl_langinfo(CODESET), "UTF-8") != 0)
        qputenv("LC_ALL", "C.UTF-8");
    // NOLINTEND(concurrency-mt-unsafe)
}

static void printOptions(const KPCommand &command)
{
    const auto print = [](const QByteArray &option, const char *help) {
        std::printf("  %-17s %s\n", option.constData(), help);
    };
    std::puts("\nOptions:");
    for (const KPCommandOption &option : command.options)
        print(option.value ? QByteArray(option.name) + ' ' + option.value : QByteArray(option.name),
              option.help);
    print("--help", "print this");
    print("--", "what follows is no option");
}

static int printHelp(const KPCommand &command)
{
    std::printf("Usage: murnctl %s %s\n\n%s\n%s", command.name, command.synopsis, command.summary,
                command.details);
    printOptions(command);
    return std::fflush(stdout) == 0 ? KPExitDone : KPExitFailed;
}

static int printHelp()
{
    std::puts("Usage: murnctl COMMAND [OPTION]… [FILE]…\n"
              "\n"
              "Tags, ratings and searches from the shell.\n"
              "\n"
              "Commands:");
    for (const KPCommand *command : commands)
        std::printf("  %-14s %s\n", command->name, command->summary);
    std::puts(
        "\n"
        "'murnctl COMMAND --help' explains a command; 'murnctl --version' prints the version.\n"
        "Exit status: 0 all done, 1 something failed, 2 wrong usage.");
    return std::fflush(stdout) == 0 ? KPExitDone : KPExitFailed;
}

static int run(const KPCommand &command, const QStringList &words)
{
    const auto line = KPCommandLine::parse(words, command);
    if (!line)
        return kpReportUsage(&command, line.error().message);
    if (line->has("--help"))
        return printHelp(command);
    XPFactorySettings::registerAll();
    // Of the log only what is wrong: standard error is for this command's own lines.
    if (!UserDefaults::standard().boolValue(QStringLiteral("KPDebugLogging")))
        QLoggingCategory::setFilterRules(QStringLiteral("murn.info=false"));
    KarvexPrefs::chooseDomain();
    XPTranslations::install(QLocale(QLocale::English)); // as all that this program prints
    // No dialogs from a shell: who may write a file as administrator says so with sudo.
    gAllowKarvexAuthenticationDialogs = false;
    CagedImporter::install(IndexSettings::storePath());
    KPCommandOutput output(*line);
    return command.run(*line, output);
}

static const KPCommand *commandNamed(const char *name)
{
    const auto found =
        std::find_if(commands.begin(), commands.end(),
                     [name](const KPCommand *each) { return std::strcmp(name, each->name) == 0; });
    return found == commands.end() ? nullptr : *found;
}

static std::unique_ptr<QCoreApplication> makeApplication(char **argv, bool needsGui)
{
    static int one = 1; // the words are ours alone: Qt does not keep their bytes
    if (!needsGui)
        return std::make_unique<QCoreApplication>(one, argv);
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // What Qt remarks on the session is none of our lines.
    const auto others = qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext &context, const QString &message) {
            if (type == QtCriticalMsg || type == QtFatalMsg)
                std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message)));
        });
    auto application = std::make_unique<QGuiApplication>(one, argv);
    qInstallMessageHandler(others);
    return application;
}

int main(int argc, char **argv)
{
    keepStandardStreamsTaken();
    std::signal(SIGPIPE, SIG_DFL); // whoever started us may ignore it; `| head` ends us quietly
    chooseUtf8();
    const KPCommand *const command = argc > 1 ? commandNamed(argv[1]) : nullptr;
    const auto application = makeApplication(argv, command != nullptr && command->needsGui);

    QStringList words;
    for (int i = 1; i < argc; ++i)
        words.append(XPPath::decode(argv[i]));
    if (words.isEmpty())
        return kpReportUsage(nullptr, QStringLiteral("no command given"));
    const QString name = words.takeFirst();
    if (name == u"--help")
        return printHelp();
    if (name == u"--version") {
        std::puts("murnctl " MURN_VERSION);
        return std::fflush(stdout) == 0 ? KPExitDone : KPExitFailed;
    }
    if (command == nullptr)
        return kpReportUsage(nullptr,
                             QStringLiteral("unknown command %1").arg(XPPath::printable(name)));
    return run(*command, words);
}
