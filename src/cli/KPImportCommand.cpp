// murnctl import: shows what the importer makes of documents, through the same cage as the index.
#include "ImportDocument.h"
#include "ImportWorker.h"
#include "KPCommandOutput.h"
#include "KPFileType.h"
#include "XPFileInfo.h"
#include "XPPath.h"
#include "XPPrograms.h"

#include <QDateTime>
#include <cmath>

// What came of one document.
struct Imported
{
    QString path;
    QString type;
    DocumentAnswer answer;
    QString reason; // of the failure, where there is more to say than its name
};

static QString isoDate(const PropertyValue::Date &date)
{
    const double milliseconds = date.secondsSince1970() * 1000;
    if (!(std::abs(milliseconds) < 1e15))
        return {};
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(milliseconds), Qt::UTC)
        .toString(Qt::ISODateWithMs);
}

static QByteArray jsonOf(const PropertyValue &value)
{
    switch (value.kind()) {
    case PropertyValue::Kind::Bool:
        return value.boolValue() ? "true" : "false";
    case PropertyValue::Kind::Integer:
        return QByteArray::number(value.integerValue());
    case PropertyValue::Kind::Real:
        return std::isfinite(value.doubleValue()) ? QByteArray::number(value.doubleValue(), 'g', 17)
                                                  : QByteArray("null");
    case PropertyValue::Kind::Date:
        return KPCommandOutput::json(isoDate(value.date()));
    case PropertyValue::Kind::String:
        return KPCommandOutput::json(value.string());
    case PropertyValue::Kind::Array:
        return KPCommandOutput::json(value.strings());
    default:
        return "null"; // the importer's client lets nothing else through
    }
}

static QString textOf(const PropertyValue &value)
{
    switch (value.kind()) {
    case PropertyValue::Kind::Date:
        return isoDate(value.date());
    case PropertyValue::Kind::String:
        return value.string();
    case PropertyValue::Kind::Array:
        return value.strings().join(QStringLiteral(", "));
    default:
        return QString::fromLatin1(jsonOf(value));
    }
}

static QByteArray jsonOf(const Imported &document)
{
    QByteArrayList attributes;
    const auto all = document.answer.allAttributes();
    for (auto it = all.begin(); it != all.end(); ++it)
        attributes.append(KPCommandOutput::json(it.key()) + ": " + jsonOf(it.value()));
    const auto &failure = document.answer.failure;
    return "{\"path\": " + KPCommandOutput::json(document.path) +
           ", \"type\": " + KPCommandOutput::json(document.type) +
           ", \"title\": " + KPCommandOutput::json(document.answer.title) +
           ", \"text\": " + KPCommandOutput::json(QString::fromUtf8(document.answer.text.utf8())) +
           ", \"attributes\": {" + attributes.join(", ") +
           "}, \"pages\": " + QByteArray::number(document.answer.pages) + ", \"error\": " +
           (failure ? KPCommandOutput::json(documentFailureName(*failure)) : QByteArray("null")) +
           '}';
}

// A document's text may hold what a terminal takes for commands: each line is made visible.
static void printText(const Imported &document, KPCommandOutput &output)
{
    output.write(output.name(document.path) + '\n');
    const auto field = [&](const QString &name, const QString &text) {
        output.write((name + QStringLiteral(": ") + XPPath::printable(text) + u'\n').toUtf8());
    };
    field(QStringLiteral("type"), document.type);
    const auto all = document.answer.allAttributes();
    for (auto it = all.begin(); it != all.end(); ++it)
        field(it.key(), textOf(it.value()));
    if (document.answer.text.isEmpty())
        return;
    output.write("\n");
    const QString text = QString::fromUtf8(document.answer.text.utf8());
    for (const QString &line : text.split(u'\n'))
        output.write(XPPath::printable(line).toUtf8() + '\n');
}

static XPResult<Imported> import(const QString &path, ImportWorker &worker)
{
    const QString full = XPPath::absolute(path);
    const auto info = XPFileInfo::read(full);
    if (!info)
        return info.error();
    Imported result = {
        path, KPFileType::utiForPath(full, XPPath::extension(full), info->mode), {}, {}};
    const auto document = ImportDocument::open(XPPath::encode(full), result.type);
    if (!document)
        return document.error();
    const auto outcome = worker.run(document->job(), document->descriptor.get());
    if (const auto *error = std::get_if<XPError>(&outcome))
        return *error;
    if (const auto *end = std::get_if<ImportWorker::Break>(&outcome)) {
        result.answer.failure = end->failure;
        result.reason = end->reason;
        return result;
    }
    auto answer = documentAnswerFrom(std::get<ImportFrame>(outcome));
    if (!answer)
        return answer.error();
    result.answer = *std::move(answer);
    return result;
}

static void reportFailure(const Imported &document, KPCommandOutput &output)
{
    if (!document.answer.failure)
        return;
    const QString name = documentFailureName(*document.answer.failure);
    output.fail(document.path,
                document.reason.isEmpty() ? name : name + QStringLiteral(": ") + document.reason);
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    if (line.operands().isEmpty())
        return kpReportUsage(&kpImportCommand, QStringLiteral("needs at least one file"));
    ImportWorker worker({.program = XPPrograms::helper("murn-importer"), .idle = false});
    QByteArray separator = "[\n  ";
    bool isFirst = true;
    for (const QString &path : line.operands()) {
        const auto document = import(path, worker);
        if (!document) {
            output.fail(path, document.error().reason());
            continue;
        }
        if (output.isJson()) {
            output.write(separator + jsonOf(*document));
            separator = ",\n  ";
        } else {
            output.write(std::exchange(isFirst, false) ? "" : "\n");
            printText(*document, output);
        }
        reportFailure(*document, output);
    }
    if (output.isJson())
        output.write(separator.startsWith('[') ? "[]\n" : "\n]\n");
    return output.exitStatus();
}

const KPCommand kpImportCommand = {
    "import",
    "[--json] FILE…",
    "Prints what the importer finds in documents: text and metadata, as the index has them.",
    "Nothing is stored. A document that needs a password, is damaged, or breaks the importer is a\n"
    "failure that says so; what could be had of it is printed all the same.\n",
    {{"--json", nullptr,
      "print an array of objects with path, type, title, text, attributes, pages and\n"
      "                    error (null, encrypted, damaged, too large, timed out, crashed,\n"
      "                    unsupported)"}},
    run};
