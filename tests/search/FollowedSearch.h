#pragma once

#include "KPSearcher.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QHash>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>

// What a view would show of a search: the differences of its deliveries applied in order, checked
// to make sense and to add up to the documents that each delivery holds.
class FollowedSearch : public QObject
{
public:
    explicit FollowedSearch(IndexSource &source, KPThreadedSearcher::Setup setup = quick())
    {
        KPDocMetaData::holdFilledValues();
        searcher = std::make_unique<KPSearcher>(source, setup);
        connect(searcher.get(), &KPSearcher::delivered, this,
                [this](const KPResultsDelivery::Ptr &delivery) { take(delivery); });
        connect(searcher.get(), &KPSearcher::finished, this, [this](const QStringList &found) {
            isFinished = true;
            problems = found;
        });
    }

    static KPThreadedSearcher::Setup quick()
    {
        KPThreadedSearcher::Setup setup;
        setup.pickUp = std::chrono::milliseconds(1);
        setup.removalDelay = std::chrono::milliseconds(20);
        return setup;
    }

    void search(const KPSearchState::Ptr &state)
    {
        isFinished = false;
        last.reset();
        searcher->setSearchState(KPSearcher::allDocumentsOf(state), false);
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
    // The results too: the last delivery may come after the end is told.
    bool waitUntilFinished()
    {
        return waitFor([this] { return isFinished && last && last->isDone; });
    }

    QStringList paths() const
    {
        QStringList sorted;
        for (const KPPooledString path : documents)
            sorted.append(path.toString());
        sorted.sort();
        return sorted;
    }
    bool holds(const QString &path) const { return docAt(path) != nullptr; }
    KPDoc *docAt(const QString &path) const
    {
        return documents.key(KPPool::pooledString(path), nullptr);
    }

    std::unique_ptr<KPSearcher> searcher;
    QHash<KPDoc *, KPPooledString> documents; // with the path as told
    KPResultsDelivery::Ptr last;
    QStringList problems;
    int deliveries = 0;
    bool isFinished = false;

private:
    void take(const KPResultsDelivery::Ptr &delivery)
    {
        last = delivery;
        if (!delivery) {
            documents.clear();
            m_shown.reset();
            return;
        }
        if (m_shown) {
            EXPECT_EQ(delivery->rows.before, m_shown) << "rows of something else";
        }
        m_shown = delivery->documents.docs;
        ++deliveries;
        const KPResultsDifference &difference = delivery->difference;
        if (difference.isReset)
            documents.clear();
        for (const auto &told : difference.removed)
            EXPECT_EQ(documents.take(told.doc), told.path) << "removed, unknown";
        for (const auto &told : difference.changed)
            EXPECT_EQ(documents.value(told.doc), told.path) << "changed, unknown";
        for (KPDoc *doc : difference.added)
            EXPECT_FALSE(documents.contains(doc)) << "added twice";
        for (size_t i = 0; i < difference.changed.size(); ++i)
            documents[difference.changed[i].doc] = delivery->changedPaths[i];
        for (size_t i = 0; i < difference.added.size(); ++i)
            documents.insert(difference.added[i], delivery->addedPaths[i]);
        const KPDocArray &docs = *delivery->documents.docs;
        EXPECT_EQ(static_cast<qsizetype>(docs.size()), documents.size());
        EXPECT_EQ(QSet<KPDoc *>(docs.begin(), docs.end()).size(), documents.size());
    }

    std::shared_ptr<const KPDocArray> m_shown;
};
