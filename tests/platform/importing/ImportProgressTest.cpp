#include "ImportProgress.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

TEST(ImportProgress, EstimatesFromWhatWasDone)
{
    ImportProgress progress;
    const ImportProgress::Clock::time_point start{};
    progress.note(1000, start);
    progress.note(990, start + 1s);
    EXPECT_EQ(progress.filesPerSecond(), std::nullopt) << "too early to say";
    progress.note(900, start + 2s);
    EXPECT_EQ(progress.filesPerSecond(), 50.0);
    EXPECT_EQ(progress.left(), 19s);
    // New work is not slowness.
    progress.note(5000, start + 3s);
    progress.note(4900, start + 5s);
    EXPECT_EQ(progress.filesPerSecond(), 50.0);
    EXPECT_EQ(progress.left(), 99s);
    // Standing still for long has no end in sight.
    for (int i = 0; i < 40; ++i)
        progress.note(4900, start + 7s + i * 2s);
    EXPECT_EQ(progress.left(), std::nullopt);
    progress.note(0, start + 100s);
    EXPECT_EQ(progress.filesPerSecond(), std::nullopt);
}
