#include "KPIndexTexts.h"

#include "XPPath.h"

#include <QObject>

static QString reasonOf(const IndexProblem &problem)
{
    using Kind = XPError::Kind;
    switch (problem.error ? problem.error->kind : Kind::Io) {
    case Kind::NotFound:
        return qtTrId("KPIndexReasonNotFound");
    case Kind::NotPermitted:
        return qtTrId("KPIndexReasonNotPermitted");
    case Kind::ReadOnly:
        return qtTrId("KPIndexReasonReadOnly");
    case Kind::NoSpace:
        return qtTrId("KPIndexReasonNoSpace");
    case Kind::Malformed:
        return qtTrId("KPIndexReasonDamaged");
    case Kind::TooLarge:
        return qtTrId("KPIndexReasonTooLarge");
    case Kind::InvalidArgument:
    case Kind::Unsupported:
    case Kind::Cancelled:
    case Kind::Io:
        break;
    }
    return qtTrId("KPIndexReasonOther");
}

static QString ofRoot(const IndexProblem &problem, const QString &path)
{
    using Kind = IndexProblem::Kind;
    switch (problem.kind) {
    case Kind::RootMissing:
        return qtTrId("KPIndexRootMissing").arg(path);
    case Kind::RootUnmounted:
        return qtTrId("KPIndexRootUnmounted").arg(path, XPPath::printable(problem.volume));
    case Kind::RootHoldsStore:
        return qtTrId("KPIndexRootHoldsStore").arg(path);
    case Kind::RootUnreadable:
        return qtTrId("KPIndexRootUnreadable").arg(path, reasonOf(problem));
    case Kind::RootDistant:
        return qtTrId("KPIndexRootDistant").arg(path).arg(problem.seconds);
    default:
        break;
    }
    return qtTrId("KPIndexRootSilent").arg(path);
}

QString KPIndexTexts::problem(const IndexProblem &problem)
{
    using Kind = IndexProblem::Kind;
    const auto count = static_cast<int>(problem.count);
    switch (problem.kind) {
    case Kind::NothingSaved:
        return qtTrId("KPIndexNothingSaved").arg(reasonOf(problem));
    case Kind::SavingFails:
        return qtTrId("KPIndexSavingFails").arg(reasonOf(problem));
    case Kind::NoRequests:
        return qtTrId("KPIndexNoRequests").arg(reasonOf(problem));
    case Kind::NotAnswering:
        return qtTrId("KPIndexNotAnswering");
    case Kind::NoWatches:
        return qtTrId("KPIndexNoWatches");
    case Kind::FoldersUnwatched:
        return qtTrId("KPIndexFoldersUnwatched", count).arg(problem.seconds);
    case Kind::EventsLost:
        return qtTrId("KPIndexEventsLost");
    case Kind::FoldersUnreadable:
        return qtTrId("KPIndexFoldersUnreadable", count);
    case Kind::ContentsUnsearchable:
        return qtTrId("KPIndexContentsUnsearchable").arg(reasonOf(problem));
    case Kind::ContentsNotSaved:
        return qtTrId("KPIndexContentsNotSaved").arg(reasonOf(problem));
    default:
        break;
    }
    const QString text = ofRoot(problem, XPPath::printable(problem.path));
    return problem.keepsItems ? qtTrId("KPIndexRootKept").arg(text) : text;
}

QStringList KPIndexTexts::problems(const IndexStatus &status)
{
    QStringList texts;
    for (const IndexProblem &found : status.problems)
        texts.append(problem(found));
    return texts;
}

static QString remedyOfSaving(const IndexProblem &problem)
{
    const bool isFull = problem.error && problem.error->kind == XPError::Kind::NoSpace;
    return isFull ? qtTrId("KPIndexRemedyRoom") : QString();
}

QString KPIndexTexts::remedy(const IndexProblem &problem)
{
    using Kind = IndexProblem::Kind;
    const auto limit = [](const char *name) {
        return qtTrId("KPIndexRemedyLimit")
            .arg(QStringLiteral("fs.inotify.") + QLatin1String(name));
    };
    switch (problem.kind) {
    case Kind::NoWatches:
        return limit("max_user_instances");
    case Kind::FoldersUnwatched:
        return limit("max_user_watches");
    case Kind::EventsLost:
        return limit("max_queued_events");
    case Kind::NothingSaved:
    case Kind::SavingFails:
    case Kind::ContentsNotSaved:
        return remedyOfSaving(problem);
    case Kind::ContentsUnsearchable:
        return qtTrId("KPIndexRemedyRebuild");
    case Kind::NotAnswering:
        return qtTrId("KPIndexRemedyOtherProgram");
    case Kind::RootMissing:
    case Kind::RootUnmounted:
    case Kind::RootSilent:
        return qtTrId("KPIndexRemedyConnect");
    case Kind::RootUnreadable:
    case Kind::FoldersUnreadable:
        return qtTrId("KPIndexRemedyRights");
    default:
        return {};
    }
}
