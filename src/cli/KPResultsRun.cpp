#include "KPResultsRun.h"

#include "MDQueryParser.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <QLocale>
#include <algorithm>

XPResult<KPResultsRun::Options> KPResultsRun::optionsOf(const KPCommandLine &line)
{
    for (const char *other : {"--json", "--count", "--limit"}) {
        if (const auto error = line.onlyOneOf({"--live", other}))
            return *error;
    }
    for (const char *other : {"--json", "--count"}) {
        if (const auto error = line.onlyOneOf({"--print0", other}))
            return *error;
    }
    for (const QString &folder : line.values("--in")) {
        if (folder.isEmpty())
            return kpUsageError(QStringLiteral("--in needs a folder"));
    }
    Options options;
    options.live = line.has("--live");
    options.count = line.has("--count");
    if (line.has("--limit")) {
        bool isNumber = false;
        const QString text = line.values("--limit").last();
        options.limit = text.toLongLong(&isNumber);
        if (!isNumber || *options.limit < 1)
            return kpUsageError(QStringLiteral("--limit needs a number from 1 up, not \"%1\"")
                                    .arg(XPPath::printable(text)));
    }
    return options;
}

QStringList KPResultsRun::foldersOf(const KPCommandLine &line, KPCommandOutput &output)
{
    QStringList folders;
    for (const QString &given : line.values("--in")) {
        const auto folder = XPFolders::realFolder(given);
        if (folder)
            folders.append(*folder);
        else
            output.fail(folder.error().path, folder.error().reason());
    }
    return folders;
}

static bool asksForContent(const MDPredicate &predicate)
{
    static const QStringList imported = {
        QStringLiteral("kMDItemTextContent"),    QStringLiteral("kMDItemTitle"),
        QStringLiteral("kMDItemAuthors"),        QStringLiteral("kMDItemKeywords"),
        QStringLiteral("kMDItemSubject"),        QStringLiteral("kMDItemDescription"),
        QStringLiteral("kMDItemCreator"),        QStringLiteral("kMDItemNumberOfPages"),
        QStringLiteral("kMDItemPixelWidth"),     QStringLiteral("kMDItemPixelHeight"),
        QStringLiteral("kMDItemDurationSeconds")};
    return imported.contains(predicate.attribute) ||
           std::any_of(predicate.children.begin(), predicate.children.end(),
                       [](const MDPredicatePtr &child) { return asksForContent(*child); });
}

bool KPResultsRun::asksForContent(const QString &query)
{
    const auto predicate = MDQueryParser::parse(query);
    return predicate && ::asksForContent(**predicate);
}

std::vector<KPCommandOption> KPResultsRun::commandOptions(std::vector<KPCommandOption> own)
{
    own.insert(own.end(), {{"--count", nullptr, "print only how many there are"},
                           {"--limit", "N", "end after N of them"},
                           {"--live", nullptr,
                            "follow changes until interrupted: lines \"+ PATH\" (new), \"- PATH\"\n"
                            "                    (no longer), \"~ PATH\" (changed)"},
                           {"--json", nullptr, "print an array of objects"},
                           {"--print0", nullptr, "end each path with NUL"}});
    return own;
}

KPResultsRun::KPResultsRun(const Options &options, KPIndexSession &session, KPCommandOutput &output)
    : m_options(options), m_session(session), m_output(output)
{
}

int KPResultsRun::run(const std::function<void(KPIndexedResults &)> &start)
{
    KPIndexedResults source(m_session.index().source(), m_options.live
                                                            ? KPIndexedResults::Mode::Live
                                                            : KPIndexedResults::Mode::Once);
    connectTo(source);
    connect(&m_session.interrupt(), &KPInterrupt::interrupted, this, [this] { end(); });
    start(source);
    QCoreApplication::exec();
    source.stop();
    // Who follows changes ends it like this; whatever else was interrupted is not complete.
    if (m_session.interrupt().happened() && !m_options.live)
        return KPExitInterrupted;
    if (m_options.count)
        m_output.write(QByteArray::number(m_count) + '\n');
    else if (m_output.isJson())
        m_output.write(m_count ? "\n]\n" : "[]\n");
    return m_output.exitStatus();
}

void KPResultsRun::connectTo(KPResultSource &source)
{
    connect(&source, &KPResultSource::documentsAdded, this, &KPResultsRun::added);
    connect(&source, &KPResultSource::documentsChanged, this,
            [this](const QList<KPFoundDocument> &documents) {
                for (const KPFoundDocument &document : documents) {
                    printChange('~', document.path);
                    reportError(document);
                }
                if (!m_output.flush())
                    end();
            });
    connect(&source, &KPResultSource::documentsRemoved, this, [this](const QStringList &paths) {
        for (const QString &path : paths)
            printChange('-', path);
        if (!m_output.flush())
            end();
    });
    connect(&source, &KPResultSource::finished, this, &KPResultsRun::finished);
}

void KPResultsRun::end()
{
    m_isEnded = true;
    QCoreApplication::exit();
}

void KPResultsRun::added(const QList<KPFoundDocument> &documents)
{
    for (const KPFoundDocument &document : documents) {
        if (m_isEnded)
            return;
        ++m_count;
        if (m_options.live)
            printChange('+', document.path);
        else if (!m_options.count)
            printDocument(document);
        reportError(document);
        if (m_count == m_options.limit)
            end();
    }
    if (!m_output.flush())
        end();
}

void KPResultsRun::printDocument(const KPFoundDocument &document)
{
    if (!m_output.isJson()) {
        m_output.writeRecord(m_output.name(document.path));
        return;
    }
    m_output.write((m_count == 1 ? "[\n  {\"path\": " : ",\n  {\"path\": ") +
                   KPCommandOutput::json(document.path));
    if (m_options.documents)
        m_output.write(", \"tags\": " + KPCommandOutput::json(document.tags) + ", \"rating\": " +
                       QByteArray::number(document.rating, 'g', QLocale::FloatingPointShortest));
    m_output.write("}");
}

void KPResultsRun::printChange(char sign, const QString &path)
{
    m_output.writeRecord(sign + (' ' + m_output.name(path)));
}

void KPResultsRun::reportError(const KPFoundDocument &document)
{
    if (m_options.documents && !document.error.isEmpty())
        m_output.fail(document.path, document.error);
}

void KPResultsRun::finished(const QStringList &problems)
{
    for (const QString &problem : problems)
        m_output.fail(problem);
    if (!m_options.live)
        end();
}
