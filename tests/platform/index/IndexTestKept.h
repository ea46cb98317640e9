#pragma once

#include "IndexKeeper.h"

#include <QDeadlineTimer>
#include <gtest/gtest.h>

// An index kept in the test's process.
class IndexTestKept
{
public:
    IndexTestKept(const QString &store, const QString &root)
    {
        auto keeper = IndexKeeper::start(store, {root}, IndexRules());
        if (keeper)
            m_keeper = *std::move(keeper);
        else
            ADD_FAILURE() << keeper.error().message.toStdString();
    }
    bool isOpen() const { return m_keeper != nullptr; }
    IndexSource &source() { return *m_keeper; }
    QStringList problems() const { return m_keeper->status().problems; }

    // Up to date, contents too; false after a minute.
    bool settle()
    {
        const QDeadlineTimer deadline(60'000);
        return m_keeper->sync(true, [&] { return deadline.hasExpired(); });
    }

private:
    std::unique_ptr<IndexKeeper> m_keeper;
};
