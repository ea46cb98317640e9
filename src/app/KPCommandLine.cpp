#include "KPCommandLine.h"

#include "XPApplicationBus.h"
#include "XPFileInfo.h"
#include "XPFileUrls.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QCommandLineParser>

using Option = QCommandLineOption;

namespace {

struct Options
{
    Option folder{QStringLiteral("folder"), qtTrId("KPOptionFolder"), QStringLiteral("DIR")};
    Option search{QStringLiteral("search"), qtTrId("KPOptionSearch"), QStringLiteral("TEXT")};
    Option searchSelection{QStringLiteral("search-selection"), qtTrId("KPOptionSearchSelection")};
    Option fileClipboard{QStringLiteral("file-clipboard"), qtTrId("KPOptionFileClipboard")};
    Option show{QStringLiteral("show"), qtTrId("KPOptionShow")};
    Option tag{QStringLiteral("tag"), qtTrId("KPOptionTag")};
    Option file{QStringLiteral("file"), qtTrId("KPOptionFile")};
    Option newInstance{QStringLiteral("new-instance"), qtTrId("KPOptionNewInstance")};
    Option screenshot{QStringLiteral("screenshot"), QString(), QStringLiteral("FILE")};
    Option select{QStringLiteral("select"), QString(), QStringLiteral("NAME")};
    Option colours{QStringLiteral("color-scheme"), QString(), QStringLiteral("SCHEME")};
    Option help{{QStringLiteral("h"), QStringLiteral("help")}, qtTrId("KPOptionHelp")};
    Option version{{QStringLiteral("v"), QStringLiteral("version")}, qtTrId("KPOptionVersion")};
};

} // namespace

// The last three are for making the pictures of the documentation (see docs and tools/shots):
// they show the window once everything is found and drawn, save it and quit.
static void addTo(QCommandLineParser *parser, Options *options)
{
    parser->setApplicationDescription(qtTrId("KPApplicationSummary"));
    parser->setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsOptions);
    for (Option *hidden : {&options->screenshot, &options->select, &options->colours})
        hidden->setFlags(Option::HiddenFromHelp);
    parser->addOptions({options->folder, options->search, options->searchSelection,
                        options->fileClipboard, options->show, options->tag, options->file,
                        options->newInstance, options->help, options->version, options->screenshot,
                        options->select, options->colours});
    parser->addPositionalArgument(QStringLiteral("FILE"), qtTrId("KPOptionFiles"),
                                  QStringLiteral("[FILE|URL]..."));
}

static XPError usageError(const QString &message)
{
    return XPError::make(XPError::Kind::InvalidArgument, message);
}

static std::optional<XPError> takeFolders(const QStringList &folders, KPCommandLine *result)
{
    for (const QString &folder : folders) {
        const auto real = XPFolders::realFolder(folder);
        if (!real)
            return XPError::make(real.error().kind,
                                 qtTrId("KPNoSuchFolder").arg(XPPath::printable(folder)),
                                 real.error().path);
        result->folders.append(*real);
    }
    return {};
}

static bool isUrl(const QString &text)
{
    return text.startsWith(u"murn:", Qt::CaseInsensitive) || text.startsWith(u"http://") ||
           text.startsWith(u"https://") || text.startsWith(u"file:", Qt::CaseInsensitive);
}

static std::optional<XPError> takeFiles(const QStringList &texts, KPCommandLine *result)
{
    for (const QString &text : texts) {
        if (isUrl(text)) {
            result->urls.append(text);
            continue;
        }
        const QString path = XPPath::absolute(text);
        if (const auto info = XPFileInfo::read(path); !info)
            return XPError::make(info.error().kind,
                                 qtTrId("KPNoSuchFile").arg(XPPath::printable(text)), path);
        result->urls.append(QString::fromLatin1(XPFileUrls::encoded(path)));
    }
    return {};
}

static std::optional<XPError> takeColours(const QString &scheme, KPCommandLine *result)
{
    if (scheme == u"dark")
        result->colours = KPCommandLine::ColourScheme::Dark;
    else if (scheme == u"light")
        result->colours = KPCommandLine::ColourScheme::Light;
    else if (!scheme.isEmpty())
        return usageError(qtTrId("KPBadColourScheme").arg(XPPath::printable(scheme)));
    return {};
}

XPResult<KPCommandLine> KPCommandLine::parse(const QByteArrayList &arguments)
{
    QStringList texts;
    for (const QByteArray &argument : arguments)
        texts.append(XPPath::decode(argument));
    QCommandLineParser parser;
    Options options;
    addTo(&parser, &options);
    if (!parser.parse(texts))
        return usageError(XPPath::printable(parser.errorText()));
    KPCommandLine result;
    if (parser.isSet(options.help))
        result.action = Action::ShowHelp;
    else if (parser.isSet(options.version))
        result.action = Action::ShowVersion;
    if (auto error = takeFolders(parser.values(options.folder), &result))
        return *error;
    if (auto error = takeFiles(parser.positionalArguments(), &result))
        return *error;
    if (parser.isSet(options.search))
        result.searchText = parser.value(options.search);
    else if (parser.isSet(options.searchSelection))
        result.searchText = QString();
    result.isNewInstance = parser.isSet(options.newInstance);
    result.filesClipboard = parser.isSet(options.fileClipboard);
    if (parser.isSet(options.file))
        result.documentsAction = XPApplicationBus::fileIntoAction;
    else if (parser.isSet(options.tag))
        result.documentsAction = XPApplicationBus::tagAction;
    else if (parser.isSet(options.show))
        result.documentsAction = XPApplicationBus::revealAction;
    if (!result.documentsAction.isEmpty() && result.urls.isEmpty())
        return usageError(qtTrId("KPOptionNeedsFiles"));
    if (auto error = takeColours(parser.value(options.colours), &result))
        return *error;
    result.screenshot = parser.value(options.screenshot);
    result.selection = parser.value(options.select);
    return result;
}

QString KPCommandLine::helpText()
{
    QCommandLineParser parser;
    Options options;
    addTo(&parser, &options);
    return parser.helpText();
}
