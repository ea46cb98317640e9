// murnctl types: shows the content types of files and extensions.
#include "KPCommandOutput.h"
#include "KPContentTypes.h"
#include "KPFileType.h"
#include "KPFileTypeRegistry.h"
#include "XPFileInfo.h"
#include "XPPath.h"

// What one file or one extension turned out to be.
struct TypeAnswer
{
    QString asked; // as the user wrote it
    QString type;
    QStringList all; // what the extension may stand for, preferred first
};

static std::optional<TypeAnswer> answerForFile(const QString &path, KPCommandOutput &output)
{
    const QString full = XPPath::absolute(path);
    const auto info = XPFileInfo::read(full);
    if (!info) {
        output.fail(path, info.error().reason());
        return {};
    }
    const QString extension = XPPath::extension(full);
    return TypeAnswer{path, KPFileType::utiForPath(full, extension, info->mode),
                      KPFileType::allUTIsForExtension(extension, info->isDirectory())};
}

static TypeAnswer answerForExtension(const QString &text)
{
    const QString extension = text.startsWith(u'.') ? text.mid(1) : text;
    return {text, KPFileType::utiForFileExtension(extension),
            KPFileType::allUTIsForExtension(extension, false)};
}

static void printJson(const std::vector<TypeAnswer> &answers, const char *key, bool all,
                      KPCommandOutput &output)
{
    QByteArray separator = "[\n  ";
    for (const TypeAnswer &answer : answers) {
        output.write(
            separator + "{\"" + key + "\": " + KPCommandOutput::json(answer.asked) +
            ", \"type\": " + KPCommandOutput::json(answer.type) + ", \"typeTree\": " +
            KPCommandOutput::json(KPContentTypes::typeTree(answer.type)) + ", \"displayName\": " +
            KPCommandOutput::json(KPFileType::displayNameForUTI(answer.type)) +
            (all ? ", \"all\": " + KPCommandOutput::json(answer.all) : QByteArray()) + '}');
        separator = ",\n  ";
    }
    output.write(answers.empty() ? "[]\n" : "\n]\n");
}

static void printText(const TypeAnswer &answer, bool tree, bool all, bool named,
                      KPCommandOutput &output)
{
    const auto print = [&](const QString &type, const QByteArray &indent) {
        output.write(indent + output.name(type) + '\t' +
                     output.name(KPFileType::displayNameForUTI(type)) + '\n');
    };
    print(answer.type, named ? output.name(answer.asked) + '\t' : QByteArray());
    if (all) {
        for (const QString &type : answer.all) {
            if (type != answer.type)
                print(type, "  or ");
        }
    }
    if (tree) {
        for (const QString &type : KPContentTypes::typeTree(answer.type).mid(1))
            print(type, "  is ");
    }
}

// The groups as the user has them: switched on or off, their names and types.
static int printGroups(KPCommandOutput &output)
{
    KPFileTypeRegistry &registry = KPFileTypeRegistry::instance();
    registry.readFileTypesPlist();
    QByteArray separator = "[\n  ";
    for (const auto &group : registry.fileTypeGroupsArray()) {
        if (output.isJson()) {
            output.write(separator +
                         "{\"displayName\": " + KPCommandOutput::json(group->displayName()) +
                         ", \"enabled\": " + (group->enabled() ? "true" : "false") +
                         ", \"builtIn\": " + (group->isBuiltIn() ? "true" : "false") +
                         ", \"types\": " + KPCommandOutput::json(group->utiArray()) + '}');
            separator = ",\n  ";
            continue;
        }
        output.write((group->enabled() ? "on\t" : "off\t") + output.name(group->displayName()) +
                     '\t' + output.name(group->utiArray().join(u' ')) + '\n');
    }
    if (output.isJson())
        output.write("\n]\n");
    return output.exitStatus();
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    if (line.has("--groups")) {
        for (const char *other : {"--extension", "--tree", "--all"}) {
            if (const auto error = line.onlyOneOf({"--groups", other}))
                return kpReportUsage(&kpTypesCommand, error->message);
        }
        if (!line.operands().isEmpty())
            return kpReportUsage(&kpTypesCommand, QStringLiteral("--groups takes no files"));
        return printGroups(output);
    }
    const QStringList extensions = line.values("--extension");
    if (line.operands().isEmpty() == extensions.isEmpty())
        return kpReportUsage(&kpTypesCommand, QStringLiteral("needs either files or --extension"));
    std::vector<TypeAnswer> answers;
    for (const QString &extension : extensions) {
        if (extension.isEmpty() || extension == u".")
            return kpReportUsage(&kpTypesCommand, QStringLiteral("--extension needs a text"));
        answers.push_back(answerForExtension(extension));
    }
    for (const QString &path : line.operands()) {
        if (const auto answer = answerForFile(path, output))
            answers.push_back(*answer);
    }
    const bool all = line.has("--all");
    if (output.isJson()) {
        printJson(answers, extensions.isEmpty() ? "path" : "extension", all, output);
        return output.exitStatus();
    }
    const bool named = line.operands().size() + extensions.size() > 1;
    for (const TypeAnswer &answer : answers)
        printText(answer, line.has("--tree"), all, named, output);
    return output.exitStatus();
}

const KPCommand kpTypesCommand = {
    "types",
    "[--tree] [--all] [--json] FILE…\n       murnctl types [--tree] [--all] [--json] "
    "--extension X…\n       murnctl types --groups [--json]",
    "Prints the content type of files: the identifier, a tab and its name.",
    "With several files or extensions each line begins with the one it speaks of and a tab. A\n"
    "folder, a link and a file without a useful extension are judged by what they are; files on\n"
    "network volumes by their extension alone.\n",
    {{"--extension", "X", "the type that an extension stands for, instead of files' types"},
     {"--tree", nullptr, "also the types it conforms to, nearest first (lines \"  is TYPE\")"},
     {"--all", nullptr, "also the other types declared for the extension (lines \"  or TYPE\")"},
     {"--groups", nullptr,
      "print the groups of types: on or off, a tab, the name, a tab, the types;\n"
      "                    tree_TYPE is a type with all that conform to it"},
     {"--json", nullptr,
      "print an array of objects with path or extension, type, typeTree and\n"
      "                    displayName; with --all also all"}},
    run};
