#pragma once

#include "KPResultSource.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QHash>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>

// What a view would show of a result source: its signals applied in order, and checked to make
// sense (nothing added twice, nothing changed or removed that is not there).
class FollowedResults : public QObject
{
public:
    explicit FollowedResults(KPResultSource &source)
    {
        connect(&source, &KPResultSource::resultsReset, this, [this] {
            ++resets;
            documents.clear();
            isFinished = false;
        });
        connect(&source, &KPResultSource::documentsAdded, this,
                [this](const QList<KPFoundDocument> &added) {
                    for (const auto &document : added) {
                        EXPECT_FALSE(documents.contains(document.path)) << "added twice";
                        documents.insert(document.path, document);
                    }
                });
        connect(&source, &KPResultSource::documentsChanged, this,
                [this](const QList<KPFoundDocument> &changed) {
                    for (const auto &document : changed) {
                        EXPECT_TRUE(documents.contains(document.path)) << "changed, unknown";
                        documents.insert(document.path, document);
                    }
                });
        connect(&source, &KPResultSource::documentsRemoved, this, [this](const QStringList &gone) {
            for (const auto &path : gone)
                EXPECT_EQ(documents.remove(path), 1) << "removed, unknown";
        });
        connect(&source, &KPResultSource::finished, this, [this](const QStringList &found) {
            isFinished = true;
            problems = found;
        });
    }

    // Runs the event loop until the condition holds; false after 30 seconds.
    static bool waitFor(const std::function<bool()> &condition)
    {
        const QDeadlineTimer deadline(30'000);
        QTimer tick; // for conditions that come true without an event
        tick.start(10);
        while (!condition() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return condition();
    }
    bool waitUntilFinished()
    {
        return waitFor([this] { return isFinished; });
    }

    QStringList paths() const
    {
        QStringList sorted = documents.keys();
        sorted.sort();
        return sorted;
    }

    QHash<QString, KPFoundDocument> documents;
    QStringList problems;
    int resets = 0;
    bool isFinished = false;
};
