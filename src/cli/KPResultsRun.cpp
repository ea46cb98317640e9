#include "KPResultsRun.h"

#include "IndexLook.h"
#include "KPIndexCoverage.h"
#include "KPSearcher.h"
#include "KPSortedResults.h"
#include "KPStatePaths.h"
#include "MDQueryParser.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QCoreApplication>
#include <QLocale>
#include <algorithm>

// Nothing: no order was asked for.
static XPResult<std::optional<KPSortOrder>> orderOf(const KPCommandLine &line)
{
    if (!line.has("--sort") && !line.has("--group"))
        return std::optional<KPSortOrder>();
    const auto unknown = [](const char *option, const QString &text) {
        return kpUsageError(QStringLiteral("%1 does not know \"%2\"; there are: %3, each with - in "
                                           "front to turn it round")
                                .arg(QLatin1String(option), XPPath::printable(text),
                                     KPSortKey::names().join(QStringLiteral(", "))));
    };
    KPSortOrder order;
    if (line.has("--sort")) {
        const QString text = line.values("--sort").last();
        const auto keys = KPSortOrder::keysFromText(text);
        if (!keys)
            return unknown("--sort", text);
        order.keys = *keys;
    }
    if (line.has("--group")) {
        const QString text = line.values("--group").last();
        order.group = KPSortKey::fromText(text);
        if (!order.group)
            return unknown("--group", text);
    }
    return std::optional(order);
}

XPResult<KPResultsRun::Options> KPResultsRun::optionsOf(const KPCommandLine &line)
{
    for (const char *order : {"--sort", "--group"}) {
        for (const char *other : {"--live", "--count", "--explain", "--print-state"}) {
            if (const auto error = line.onlyOneOf({order, other}))
                return *error;
        }
    }
    if (const auto error = line.onlyOneOf({"--group", "--print0"}))
        return *error;
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
    const auto order = orderOf(line);
    if (!order)
        return order.error();
    options.order = *order;
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

std::vector<KPCommandOption> KPResultsRun::orderOptions()
{
    return {{"--sort", "KEYS",
             "print in order, by one key or several with commas between: name,\n"
             "                    type, size, modified, created, added, rating, tags, folder;\n"
             "                    -KEY: the other way round"},
            {"--group", "KEY",
             "print in groups of equal KEY (as with --sort), each below its name;\n"
             "                    groups are apart by empty lines"}};
}

KPResultsRun::KPResultsRun(const Options &options, KPIndexSession &session, KPCommandOutput &output)
    : m_options(options), m_session(session), m_output(output)
{
}

int KPResultsRun::run()
{
    connect(&m_session.interrupt(), &KPInterrupt::interrupted, this, [this] { end(); });
    if (!m_isEnded)
        QCoreApplication::exec();
    m_isEnded = true;
    // Who follows changes ends it like this; whatever else was interrupted is not complete.
    if (m_session.interrupt().happened() && !m_options.live)
        return KPExitInterrupted;
    if (m_options.count)
        m_output.write(QByteArray::number(m_count) + '\n');
    else if (m_output.isJson())
        m_output.write(m_count ? "\n]\n" : "[]\n");
    return m_output.exitStatus();
}

void KPResultsRun::end()
{
    m_isEnded = true;
    QCoreApplication::exit();
}

// --- The documents of a state

int KPResultsRun::print(const KPSearchState::Ptr &state, const Options &options,
                        KPCommandOutput &output)
{
    KPIndexSession session(output);
    // A listing looks at the disk itself.
    const bool asksIndex = !state->isFinderListing() && !state->isFileListSearch();
    if (asksIndex && !session.catchUp(KPStatePaths::needsContents(*state)))
        return KPExitInterrupted;
    return KPResultsRun(options, session, output).search(state);
}

int KPResultsRun::search(const KPSearchState::Ptr &state)
{
    m_documents = true;
    m_isListing = state->isFinderListing() || state->isFileListSearch();
    KPThreadedSearcher::Setup setup;
    setup.live = m_options.live;
    setup.makesRecords = m_options.order.has_value();
    setup.countsTags = m_options.order.has_value(); // it may ask for what stands on the files
    setup.firstMaximum = 0;
    setup.maximum = 0;
    setup.pickUp = std::chrono::milliseconds(0); // nobody types here
    IndexSource &source = m_session.index().source();
    if (m_isListing || m_options.order) {
        KPDocMetaData::holdFilledValues();
        KPDocMetaData::useIndex(source);
    }
    int status = 0;
    {
        KPThreadedSearcher searcher(source, this, setup);
        if (m_options.order)
            searcher.setResultsOrder(std::make_unique<KPSortedResults>(*m_options.order));
        searcher.startSearchThread();
        searcher.newSearchState(KPSearcher::allDocumentsOf(state));
        status = run();
    }
    xpGuiThread.assertHere();
    KPDoc::stopMetaDataSearching();
    return status;
}

KPDocValues KPResultsRun::valuesAt(const QString &path) const
{
    if (m_isListing)
        return KPDocValues::ofFile(path);
    const IndexLook look(m_session.index().source());
    const auto row = look.atPath(XPPath::encode(path));
    return row ? KPDocValues::ofRow(*row) : KPDocValues();
}

void KPResultsRun::updatedResults(const KPResultsDelivery::Ptr &delivery)
{
    if (m_isEnded)
        return;
    if (m_options.order) {
        m_sorted = delivery;
        return;
    }
    const KPResultsDifference &difference = delivery->difference;
    for (const auto &told : difference.removed)
        printChange('-', told.path.toString());
    for (size_t i = 0; i < difference.changed.size(); ++i) {
        const KPPooledString before = difference.changed[i].path;
        const KPPooledString now = delivery->changedPaths[i];
        if (now != before)
            printChange('-', before.toString());
        printChange(now != before ? '+' : '~', now.toString());
        reportProblem(now.toString(), valuesAt(now.toString()));
    }
    for (const KPPooledString path : delivery->addedPaths) {
        const KPDocValues values = valuesAt(path.toString());
        add(path.toString(), &values);
        if (m_isEnded)
            return;
    }
    for (const IndexItem item : delivery->items) {
        QString path;
        KPDocValues values;
        {
            const IndexLook look(m_session.index().source());
            const auto row = look.at(item);
            if (!row)
                continue;
            path = XPPath::decode(row->path());
            values = KPDocValues::ofRow(*row);
        }
        add(path, &values);
        if (m_isEnded)
            return;
    }
    if (!m_output.flush())
        end();
}

// All of them were found.
void KPResultsRun::printSorted()
{
    const KPDocArray &docs = *m_sorted->documents.docs;
    const KPResultGroups *groups = m_sorted->documents.groups.get();
    size_t run = 0;
    for (size_t row = 0; row < docs.size() && !m_isEnded; ++row) {
        const KPResultGroup *group = nullptr;
        if (groups != nullptr) {
            const auto at = static_cast<qsizetype>(row);
            while (at >= groups->runs[run].first + groups->runs[run].count)
                ++run;
            group = groups->runs[run].group;
            if (at == groups->runs[run].first && !m_output.isJson())
                m_output.write((at == 0 ? "" : "\n") + XPPath::printable(group->name).toUtf8() +
                               '\n');
        }
        const QString path = docs[row]->filePath();
        const KPDocValues values = valuesAt(path);
        add(path, &values, group);
    }
    if (!m_output.flush())
        end();
}

void KPResultsRun::searchDone(const QStringList &problems)
{
    if (m_isEnded)
        return;
    if (m_sorted)
        printSorted();
    for (const QString &problem : problems)
        m_output.fail(problem);
    if (!m_options.live)
        end();
}

// --- What a query matches

int KPResultsRun::query(const QString &text, const QStringList &folders)
{
    IndexSource &source = m_session.index().source();
    const auto created = MDQuery::create(source, text);
    if (!created) {
        m_output.fail(created.error().message);
        return m_output.exitStatus();
    }
    MDQuery &query = **created;
    query.setSearchScope(folders);
    connect(&query, &MDQuery::progress, this, [&] { takeQueryItems(query); });
    connect(&query, &MDQuery::finished, this, [&] {
        takeQueryItems(query);
        QStringList problems;
        for (const QString &folder : folders) {
            if (const QString problem = KPIndexCoverage::problem(source, folder);
                !problem.isEmpty())
                problems.append(problem);
        }
        searchDone(problems);
    });
    connect(&query, &MDQuery::updated, this, &KPResultsRun::takeQueryChanges);
    query.execute(m_options.live ? MDQuery::Options(MDQuery::WantsUpdates) : MDQuery::Options());
    return run();
}

static QString pathOf(const IndexSource &source, IndexItem item, size_t *facts)
{
    const IndexLook look(source);
    const auto row = look.at(item);
    if (!row)
        return {};
    *facts = KPResultCounts::Values::factsOf(row->info());
    return XPPath::decode(row->path());
}

void KPResultsRun::takeQueryItems(MDQuery &query)
{
    const IndexSource &source = m_session.index().source();
    for (; m_taken < query.resultCount() && !m_isEnded; ++m_taken) {
        size_t facts = 0;
        const IndexItem item = query.itemAt(m_taken);
        const QString path = pathOf(source, item, &facts);
        if (path.isEmpty())
            continue;
        if (m_options.live)
            m_shown.insert(item, {path, facts});
        add(path, nullptr);
    }
    if (!m_output.flush())
        end();
}

void KPResultsRun::takeQueryChanges(const QList<IndexItem> &added, const QList<IndexItem> &changed,
                                    const QList<IndexItem> &removed)
{
    const IndexSource &source = m_session.index().source();
    QList<std::pair<IndexItem, Shown>> present;
    for (const IndexItem item : removed) {
        if (const Shown shown = m_shown.take(item); !shown.path.isEmpty())
            printChange('-', shown.path);
    }
    // All that leaves its place goes before anything takes one: two may have changed places.
    for (const IndexItem item : added + changed) {
        Shown now;
        now.path = pathOf(source, item, &now.facts);
        const Shown before = m_shown.value(item);
        if (!before.path.isEmpty() && before.path != now.path)
            printChange('-', m_shown.take(item).path);
        if (!now.path.isEmpty())
            present.emplaceBack(item, now);
    }
    for (const auto &[item, now] : present) {
        const auto shown = m_shown.constFind(item);
        if (shown == m_shown.cend() || shown->facts != now.facts)
            printChange(shown == m_shown.cend() ? '+' : '~', now.path);
        m_shown.insert(item, now);
    }
    if (!m_output.flush())
        end();
}

// --- Printing

// Values of a document; null for what a query matched.
void KPResultsRun::add(const QString &path, const KPDocValues *values, const KPResultGroup *group)
{
    ++m_count;
    if (m_options.live) {
        printChange('+', path);
    } else if (!m_options.count && !m_output.isJson()) {
        m_output.writeRecord(m_output.name(path));
    } else if (!m_options.count) {
        m_output.write((m_count == 1 ? "[\n  {\"path\": " : ",\n  {\"path\": ") +
                       KPCommandOutput::json(path));
        if (values != nullptr)
            m_output.write(
                ", \"tags\": " + KPCommandOutput::json(values->tags()) + ", \"rating\": " +
                QByteArray::number(values->rating(), 'g', QLocale::FloatingPointShortest));
        if (group != nullptr)
            m_output.write(", \"group\": " + KPCommandOutput::json(group->key));
        m_output.write("}");
    }
    if (values != nullptr)
        reportProblem(path, *values);
    if (m_count == m_options.limit)
        end();
}

void KPResultsRun::printChange(char sign, const QString &path)
{
    m_output.writeRecord(sign + (' ' + m_output.name(path)));
}

void KPResultsRun::reportProblem(const QString &path, const KPDocValues &values)
{
    if (const QString problem = values.problem(); !problem.isEmpty())
        m_output.fail(path, problem);
}
