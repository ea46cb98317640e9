// murnctl info: shows the document records of files.
#include "IndexSettings.h"
#include "KPCommandOutput.h"
#include "KPContentTypes.h"
#include "KPDocCache.h"
#include "KPFileType.h"
#include "KPIndexSession.h"
#include "Karvex.h"
#include "MDItem.h"
#include "XPPath.h"
#include "XPTranslations.h"

#include <QLocale>

namespace {

// A record and what the command finds out besides. What could not be read is not there.
struct Answer
{
    KPDoc *doc;
    std::optional<QStringList> tags;
    std::optional<double> rating;
    QStringList keywords;
};

// What the index holds, where there is one. It is taken as it is: the facts that are most likely
// to change come from the file.
class Index
{
public:
    explicit Index(KPCommandOutput &output)
    {
        if (XPFileInfo::read(IndexSettings::storePath()))
            m_session = std::make_unique<KPIndexSession>(output);
    }
    // False: interrupted.
    bool waitUntilLoaded()
    {
        return !m_session || m_session->index().waitUntilLoaded(
                                 [this] { return m_session->interrupt().happened(); });
    }
    PropertyValue attribute(const QString &path, const QString &name)
    {
        const auto item = m_session ? MDItem::create(m_session->index().source(), path) : nullptr;
        return item ? item->copyAttribute(name) : PropertyValue();
    }

private:
    std::unique_ptr<KPIndexSession> m_session;
};

} // namespace

static QStringList displayNames(const XPAttributeValuePtr &held)
{
    const auto *tags = XPAttributeOf<KPTagName::Tags>::in(held);
    return tags ? KPTagName::displayStringsForTagNames(*tags) : QStringList();
}

// What was found in the file, else what another program wrote on it.
static QStringList keywordsOf(const QString &path, Index &index)
{
    const QString key = QStringLiteral("kMDItemKeywords");
    PropertyValue raw = index.attribute(path, key);
    if (raw.isNull())
        raw = Karvex::getXAttrMetaData(key, path).valueOr({});
    return displayNames(KPDocMetaData::makeKeywordTagNames(raw));
}

static std::optional<Answer> answerFor(const QString &asked, Index &index, KPCommandOutput &output)
{
    const QString path = XPPath::absolute(asked);
    const auto info = XPFileInfo::read(path);
    if (!info) {
        output.fail(asked, info.error().reason());
        return {};
    }
    Answer answer{KPDocCache::docAtPath(path, &*info), {}, {}, keywordsOf(path, index)};
    if (const auto tags = Karvex::getUserTags(path))
        answer.tags = displayNames(KPDocMetaData::makeTagNames(*tags));
    else
        output.fail(asked, "tags cannot be read", tags.error());
    if (const auto rating = Karvex::getRating(path))
        answer.rating = *rating;
    else
        output.fail(asked, "the rating cannot be read", rating.error());
    return answer;
}

static QByteArray numberText(double number)
{
    return QByteArray::number(number, 'g', QLocale::FloatingPointShortest);
}

// --- JSON

static QByteArray jsonTime(const QDateTime &time)
{
    return time.isValid() ? '"' + time.toString(Qt::ISODateWithMs).toLatin1() + '"'
                          : QByteArray("null");
}

static QByteArray jsonObject(const Answer &answer)
{
    const KPDoc &doc = *answer.doc;
    const QByteArray null = "null";
    const std::pair<const char *, QByteArray> members[] = {
        {"path", KPCommandOutput::json(doc.filePath())},
        {"name", KPCommandOutput::json(doc.fsDisplayName())},
        {"type", KPCommandOutput::json(doc.fileType())},
        {"typeTree", KPCommandOutput::json(KPContentTypes::typeTree(doc.fileType()))},
        {"size", QByteArray::number(doc.unixFileSize())},
        {"sizeGroup", KPCommandOutput::json(doc.fileSizeGroup())},
        {"modified", jsonTime(doc.unixFileModificationDate())},
        {"created", jsonTime(doc.creationDate())},
        {"tags", answer.tags ? KPCommandOutput::json(*answer.tags) : null},
        {"rating", answer.rating ? numberText(*answer.rating) : null},
        {"stars", answer.rating ? QByteArray::number(KPDoc::ratingsToStars(*answer.rating)) : null},
        {"managed", doc.isManaged() ? "true" : "false"},
        {"keywords", KPCommandOutput::json(answer.keywords)},
        {"parentFolderForDisplay", KPCommandOutput::json(doc.parentFolderForDisplay())},
    };
    QByteArray object;
    for (const auto &[name, value] : members)
        object += (object.isEmpty() ? "{\"" : ", \"") + QByteArray(name) + "\": " + value;
    return object + '}';
}

static void printJson(const std::vector<Answer> &answers, KPCommandOutput &output)
{
    QByteArray separator = "[\n  ";
    for (const Answer &answer : answers) {
        output.write(separator + jsonObject(answer));
        separator = ",\n  ";
    }
    output.write(answers.empty() ? "[]\n" : "\n]\n");
}

// --- For people

static void printText(const Answer &answer, KPCommandOutput &output)
{
    const KPDoc &doc = *answer.doc;
    const auto print = [&](const char *label, const QByteArray &value) {
        output.write(QByteArray(label).append(':').leftJustified(10) + value + '\n');
    };
    const auto list = [&](const QStringList &texts) {
        QByteArrayList names;
        for (const QString &text : texts)
            names.append(output.name(text));
        return names.join(", ");
    };
    const auto time = [](const QDateTime &moment) {
        return moment.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toLatin1();
    };
    print("Path", output.name(doc.filePath()));
    print("Name", output.name(doc.fsDisplayName()));
    print("Type", output.name(doc.fileType()) + " (" +
                      output.name(KPFileType::displayNameForUTI(doc.fileType())) + ')');
    print("Size", QByteArray::number(doc.unixFileSize()) + " bytes");
    print("Modified", time(doc.unixFileModificationDate()));
    if (doc.creationDate().isValid())
        print("Created", time(doc.creationDate()));
    if (answer.tags && !answer.tags->isEmpty())
        print("Tags", list(*answer.tags));
    if (answer.rating && *answer.rating != 0)
        print("Rating", numberText(*answer.rating));
    if (!answer.keywords.isEmpty())
        print("Keywords", list(answer.keywords));
    print("Managed", doc.isManaged() ? "yes" : "no");
    print("Folder", output.name(doc.parentFolderForDisplay()));
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    if (line.operands().isEmpty())
        return kpReportUsage(&kpInfoCommand, QStringLiteral("no files given"));
    XPTranslations::install(QLocale::c()); // everything this command says is English
    Index index(output);
    if (!index.waitUntilLoaded())
        return KPExitInterrupted;
    std::vector<Answer> answers;
    for (const QString &path : line.operands()) {
        if (const auto answer = answerFor(path, index, output))
            answers.push_back(*answer);
    }
    if (output.isJson()) {
        printJson(answers, output);
        return output.exitStatus();
    }
    for (const Answer &answer : answers) {
        if (&answer != &answers.front())
            output.write("\n");
        printText(answer, output);
    }
    return output.exitStatus();
}

const KPCommand kpInfoCommand = {
    "info",
    "[--json] FILE…",
    "Shows what is known of files: type, size, times, tags, rating, keywords.",
    "Of a link, what it is itself. Keywords are those that the index has found in the file, as it\n"
    "is at the moment; the rest comes from the file.\n",
    {{"--json", nullptr,
      "print an array of objects with path, name, type, typeTree, size, sizeGroup,\n"
      "                    modified, created, tags, rating, stars, managed, keywords and\n"
      "                    parentFolderForDisplay"}},
    run};
