#include "KPMirrorImport.h"

#include "Karvex.h"
#include "MDQuery.h"

static QString having(const QStringList &keys)
{
    QStringList clauses;
    for (const QString &key : keys)
        clauses.append(key + QStringLiteral(" == *"));
    return clauses.join(QStringLiteral(" || "));
}

static QStringList pathsWith(IndexSource &source, const QStringList &keys)
{
    QStringList paths;
    const auto query = MDQuery::create(source, having(keys));
    if (!query)
        return paths;
    (*query)->execute(MDQuery::Synchronous);
    for (qsizetype number = 0; number < (*query)->resultCount(); ++number)
        paths.append((*query)->resultAt(number)->path());
    return paths;
}

bool KPMirrorImport::run(IndexSource &source, bool isDryRun,
                         const std::function<bool(const File &file)> &report)
{
    const QStringList paths =
        pathsWith(source, {Karvex::userTagsKey, Karvex::starRatingKey, KarvexFacts::commentKey,
                           KarvexFacts::desktopTagsKey, KarvexFacts::desktopRatingKey,
                           KarvexFacts::desktopCommentKey});
    for (const QString &path : paths) {
        File file{path, {}};
        auto outcome = KarvexMirror::reconcile(path, KarvexFacts::Pair::of({}), isDryRun);
        if (outcome)
            file.outcome = *std::move(outcome);
        else
            file.error = outcome.error();
        if (!report(file))
            return false;
    }
    return true;
}
