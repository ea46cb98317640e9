#include "KPProgress.h"

#include <QApplication>
#include <QProgressBar>
#include <QTest>
#include <gtest/gtest.h>

static KPProgressSheet *shownSheet()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        auto *sheet = qobject_cast<KPProgressSheet *>(widget);
        if (sheet != nullptr && sheet->isVisible())
            return sheet;
    }
    return nullptr;
}

static XPProgress::Task makeTask()
{
    auto task = std::make_shared<XPProgressTask>();
    task->title = QStringLiteral("Moving 3 items");
    task->total = 3;
    return task;
}

TEST(KPProgress, ShowsLongWorkAndStopsItWithoutHidingIt)
{
    KPProgress progress(nullptr);
    const auto task = makeTask();
    progress.begin(task);
    EXPECT_EQ(shownSheet(), nullptr); // not yet
    ASSERT_TRUE(QTest::qWaitFor([] { return shownSheet() != nullptr; }, 20000));
    KPProgressSheet *sheet = shownSheet();
    task->done = 2;
    const auto *bar = sheet->findChild<QProgressBar *>();
    EXPECT_TRUE(QTest::qWaitFor([bar] { return bar->value() == 2; }, 20000));

    QTest::keyClick(sheet, Qt::Key_Escape);
    EXPECT_TRUE(task->isStopAsked);
    EXPECT_TRUE(sheet->isVisible()); // until the work has stopped
    progress.end(task);
    EXPECT_TRUE(QTest::qWaitFor([] { return shownSheet() == nullptr; }, 20000));
}

TEST(KPProgress, ItsEndAsksAllWorkToStop)
{
    const auto task = makeTask();
    {
        KPProgress progress(nullptr);
        progress.begin(task);
    }
    EXPECT_TRUE(task->isStopAsked);
}
