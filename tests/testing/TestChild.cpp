#include "TestChild.h"

#include <cstdio>
#include <grp.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

pid_t startChild(const std::function<void()> &work)
{
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child != 0)
        return child;
    std::thread(work).join();
    std::fflush(nullptr);
    ::_exit(testing::Test::HasFailure() ? 1 : 0);
}

int waitForChild(pid_t child)
{
    int status = 0;
    if (::waitpid(child, &status, 0) != child)
        return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

int runChild(const std::function<void()> &work)
{
    return waitForChild(startChild(work));
}

void becomeNobody()
{
    constexpr uid_t nobody = 65534;
    ASSERT_EQ(::setgroups(0, nullptr), 0);
    ASSERT_EQ(::setresgid(nobody, nobody, nobody), 0);
    ASSERT_EQ(::setresuid(nobody, nobody, nobody), 0);
}

bool havePrivateMounts()
{
    return ::unshare(CLONE_NEWNS) == 0 &&
           ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}
