#pragma once

#include "KPLibraryAnswers.h"

#include <QDBusAbstractAdaptor>
#include <QObject>
#include <QVariantMap>

// The interfaces by which the desktop asks KPLibraryAnswers: one object on the bus each, as callers
// expect them at places of their own. Any call counts as use(), which keeps the process alive.
// Threads: main.
class KPLibraryObject : public QObject
{
    Q_OBJECT

public:
    explicit KPLibraryObject(KPLibraryAnswers &answers, QObject *parent = nullptr)
        : QObject(parent), m_answers(answers)
    {
    }
    KPLibraryAnswers &use()
    {
        Q_EMIT used();
        return m_answers;
    }

Q_SIGNALS:
    void used();

private:
    KPLibraryAnswers &m_answers;
};

// Our own, for whoever wants it: reading only.
class KPLibraryAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.brindle.murn.Library")

public:
    explicit KPLibraryAdaptor(KPLibraryObject *object)
        : QDBusAbstractAdaptor(object), m_object(object)
    {
    }

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names of the interface
    // Addresses of at most `limit` documents whose names have all the words, the newest first.
    QStringList Search(const QString &text, uint limit)
    {
        return m_object->use().search(text, limit);
    }
    // Of the document at that address; none where the library does not know it.
    QStringList Tags(const QString &uri)
    {
        const auto document = m_object->use().document(uri);
        return document ? document->tags : QStringList();
    }
    // Shows documents in the window.
    void Reveal(const QStringList &uris)
    {
        m_object->use();
        KPLibraryAnswers::reveal(uris);
    }
    // NOLINTEND(readability-identifier-naming)

private:
    KPLibraryObject *m_object;
};

// The search of a desktop's shell, as GNOME's developers document it.
class KPShellSearchAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.gnome.Shell.SearchProvider2")

public:
    explicit KPShellSearchAdaptor(KPLibraryObject *object)
        : QDBusAbstractAdaptor(object), m_object(object)
    {
    }

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names of the interface
    QStringList GetInitialResultSet(const QStringList &terms);
    QStringList GetSubsearchResultSet(const QStringList &, const QStringList &terms)
    {
        return GetInitialResultSet(terms);
    }
    QList<QVariantMap> GetResultMetas(const QStringList &identifiers);
    void ActivateResult(const QString &identifier, const QStringList &, uint)
    {
        m_object->use();
        KPLibraryAnswers::reveal({identifier});
    }
    void LaunchSearch(const QStringList &terms, uint)
    {
        m_object->use();
        KPLibraryAnswers::searchInWindow(terms.join(u' '));
    }
    // NOLINTEND(readability-identifier-naming)

private:
    KPLibraryObject *m_object;
};

// One find of the runner: identifier, text, icon, kind (100: exact), relevance, properties.
struct KPRunnerMatch
{
    QString id, text, icon;
    int type = 0;
    double relevance = 0;
    QVariantMap properties;
};
struct KPRunnerAction
{
    QString id, text, icon;
};
Q_DECLARE_METATYPE(KPRunnerMatch)
Q_DECLARE_METATYPE(KPRunnerAction)

// The runner of KDE's desktop.
class KPRunnerAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.krunner1")

public:
    explicit KPRunnerAdaptor(KPLibraryObject *object);

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names of the interface
    QList<KPRunnerMatch> Match(const QString &query);
    QList<KPRunnerAction> Actions() { return {}; }
    void Run(const QString &matchId, const QString &)
    {
        m_object->use();
        KPLibraryAnswers::reveal({matchId});
    }
    // NOLINTEND(readability-identifier-naming)

private:
    KPLibraryObject *m_object;
};
