#include "KPLibraryAdaptors.h"

#include <QDBusArgument>
#include <QDBusMetaType>

static constexpr qsizetype mostShown = 20; // a shell shows a few, a runner a page
static constexpr qsizetype shortestQuery = 2;

static QDBusArgument &operator<<(QDBusArgument &argument, const KPRunnerMatch &match)
{
    argument.beginStructure();
    argument << match.id << match.text << match.icon << match.type << match.relevance
             << match.properties;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, KPRunnerMatch &match)
{
    argument.beginStructure();
    argument >> match.id >> match.text >> match.icon >> match.type >> match.relevance >>
        match.properties;
    argument.endStructure();
    return argument;
}

static QDBusArgument &operator<<(QDBusArgument &argument, const KPRunnerAction &action)
{
    argument.beginStructure();
    argument << action.id << action.text << action.icon;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, KPRunnerAction &action)
{
    argument.beginStructure();
    argument >> action.id >> action.text >> action.icon;
    argument.endStructure();
    return argument;
}

static QString describe(const KPLibraryAnswers::Document &document)
{
    return document.tags.isEmpty()
               ? document.folder
               : document.folder + QStringLiteral(" · ") + document.tags.join(QStringLiteral(", "));
}

// --- The shell

QStringList KPShellSearchAdaptor::GetInitialResultSet(const QStringList &terms)
{
    return m_object->use().search(terms.join(u' '), mostShown);
}

QList<QVariantMap> KPShellSearchAdaptor::GetResultMetas(const QStringList &identifiers)
{
    QList<QVariantMap> metas;
    for (const QString &identifier : identifiers) {
        const auto document = m_object->use().document(identifier);
        if (document && metas.size() < KPLibraryAnswers::mostResults)
            metas.append({{QStringLiteral("id"), identifier},
                          {QStringLiteral("name"), document->name},
                          {QStringLiteral("description"), describe(*document)},
                          {QStringLiteral("gicon"), document->icon}});
    }
    return metas;
}

// --- The runner

KPRunnerAdaptor::KPRunnerAdaptor(KPLibraryObject *object)
    : QDBusAbstractAdaptor(object), m_object(object)
{
    qDBusRegisterMetaType<KPRunnerMatch>();
    qDBusRegisterMetaType<QList<KPRunnerMatch>>();
    qDBusRegisterMetaType<KPRunnerAction>();
    qDBusRegisterMetaType<QList<KPRunnerAction>>();
    qDBusRegisterMetaType<QList<QVariantMap>>();
}

QList<KPRunnerMatch> KPRunnerAdaptor::Match(const QString &query)
{
    constexpr int possible = 30; // of the kinds that the runner knows
    constexpr double best = 0.7; // below programs of that name
    QList<KPRunnerMatch> matches;
    if (query.trimmed().size() < shortestQuery)
        return matches;
    const QStringList addresses = m_object->use().search(query, mostShown);
    for (const QString &address : addresses) {
        const auto document = m_object->use().document(address);
        if (!document)
            continue;
        const double relevance = best - 0.01 * static_cast<double>(matches.size());
        matches.append({address,
                        document->name,
                        document->icon,
                        possible,
                        relevance,
                        {{QStringLiteral("subtext"), describe(*document)},
                         {QStringLiteral("urls"), QStringList{address}}}});
    }
    return matches;
}
