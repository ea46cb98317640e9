// Every file call of a move, a copy and a replacement fails once, and kills the process once.
#include "FilingScene.h"
#include "TestChild.h"
#include "TestFaults.h"
#include "XPFileMover.h"
#include "XPMoveRecovery.h"
#include "XPPath.h"

#include <cerrno>
#include <csignal>
#include <gtest/gtest.h>
#include <vector>

using Target = FilingScene::Target;
using Kind = FilingScene::Kind;

namespace {

struct Work
{
    const char *name;
    Target target;
    Kind kind;
    bool copies;
    bool replaces;
};

class MoverFaults : public testing::TestWithParam<Work>
{
protected:
    void SetUp() override
    {
        if (GetParam().target == Target::OtherVolume && !FilingScene::hasOtherVolume())
            GTEST_SKIP() << "shared memory keeps no user attributes here";
    }

    static FilingScene scene() { return {GetParam().target, GetParam().kind, GetParam().replaces}; }

    // Whether it says that it worked.
    static bool work(const FilingScene &scene)
    {
        const QString &from = scene.source();
        const QString &to = scene.target();
        if (GetParam().replaces)
            return GetParam().copies ? XPFileMover::copyReplacing(from, to).hasValue()
                                     : XPFileMover::moveReplacing(from, to).hasValue();
        return GetParam().copies ? !XPFileMover::copy(from, to) : !XPFileMover::move(from, to);
    }

    // Whole, under a name that people see, at this very moment.
    static void expectAllThere(const FilingScene &scene)
    {
        EXPECT_GE(scene.found(), 1);
        if (GetParam().replaces) {
            EXPECT_GE(scene.foundOld(), 1);
        }
    }

    static void expectAllOnce(const FilingScene &scene)
    {
        EXPECT_EQ(scene.remains(), QByteArrayList());
        if (GetParam().copies) {
            EXPECT_TRUE(scene.isAt(scene.source()));
        }
        const int expected = GetParam().copies && scene.isAt(scene.target()) ? 2 : 1;
        EXPECT_EQ(scene.found(), expected);
        if (GetParam().replaces) {
            EXPECT_EQ(scene.foundOld(), 1);
        }
    }
};

} // namespace

TEST_P(MoverFaults, LoseNothingAndDoubleNothing)
{
    for (const bool isLasting : {false, true}) {
        TestFaults::Errors errors(
            isLasting ? std::vector<int>{ENOSPC, EACCES}
                      : std::vector<int>{ENOSPC, EIO, EACCES, EXDEV, EMLINK, ENAMETOOLONG, EROFS});
        const auto once = [&](int at, int error) {
            const FilingScene scene = this->scene();
            bool worked = false;
            const bool isMet = TestFaults::run(
                {.folders = scene.folders(), .at = at, .error = error, .isLasting = isLasting},
                [&] { worked = work(scene); });
            if (!isMet)
                return false;
            SCOPED_TRACE(testing::Message()
                         << "call " << at << ' ' << TestFaults::failed().toStdString() << " errno "
                         << error << (isLasting ? " from then on" : ""));
            expectAllThere(scene);
            // What cannot be undone either is put right by the recovery.
            EXPECT_TRUE(isLasting || scene.isAt(scene.target()) == worked);
            if (!worked) {
                EXPECT_TRUE(scene.isAt(scene.source()));
            }
            (void)XPMoveRecovery::run();
            expectAllOnce(scene);
            return !HasFailure();
        };
        while (errors.tryNext(once)) {
        }
    }
}

TEST_P(MoverFaults, SurviveTheEndOfTheProcess)
{
    for (int at = 0;; ++at) {
        const FilingScene scene = this->scene();
        const int end = runChild([&] {
            TestFaults::run({.folders = scene.folders(), .at = at, .dies = true},
                            [&] { work(scene); });
        });
        SCOPED_TRACE(testing::Message() << "killed at call " << at);
        if (end == 0)
            break;
        ASSERT_EQ(end, -SIGKILL);
        expectAllThere(scene);
        (void)XPMoveRecovery::run();
        expectAllOnce(scene);
        if (HasFailure())
            return;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Works, MoverFaults,
    testing::Values(Work{"Move", Target::SameVolume, Kind::File, false, false},
                    Work{"MoveAcross", Target::OtherVolume, Kind::File, false, false},
                    Work{"Copy", Target::SameVolume, Kind::File, true, false},
                    Work{"Replace", Target::SameVolume, Kind::File, false, true},
                    Work{"ReplaceByCopy", Target::SameVolume, Kind::File, true, true},
                    Work{"PackageAcross", Target::OtherVolume, Kind::Package, false, false},
                    Work{"PackageReplaces", Target::SameVolume, Kind::Package, false, true}),
    [](const auto &row) { return row.param.name; });
