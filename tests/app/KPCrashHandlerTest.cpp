#include "KPCrashHandler.h"

#include "KPCrashReports.h"
#include "KPLogTail.h"
#include "TestChild.h"
#include "XPAtomicFile.h"
#include "XPLog.h"
#include "XPPath.h"

#include <csignal>
#include <gtest/gtest.h>
#include <stdexcept>
#include <unistd.h>

namespace {

// NOLINTNEXTLINE(misc-no-recursion): to run out of stack
int overflow(int depth)
{
    volatile char room[4096];
    room[0] = static_cast<char>(depth);
    return depth < 0 ? 0 : overflow(depth + 1) + room[0];
}

// A program that starts its handler, logs, and dies.
int crashOf(const std::function<void()> &end)
{
    return runChild([&] {
        KPLogTail::install();
        ASSERT_TRUE(KPCrashHandler::start(KPCrashReports::folder()));
        qCWarning(xpLog) << "last words";
        qCWarning(xpLog) << "/home/me/Secret.pdf";
        end();
    });
}

QByteArray onlyReport()
{
    const QStringList reports = KPCrashReports::takeNew();
    EXPECT_EQ(reports.size(), 1);
    const auto bytes = XPAtomicFile::read(reports.value(0));
    return bytes ? *bytes : QByteArray();
}

} // namespace

TEST(CrashHandler, LeavesAReportThatNamesNoDocument)
{
    ASSERT_TRUE(KPCrashReports::takeNew().isEmpty());
    const struct
    {
        const char *name;
        std::function<void()> end;
        int signal;
    } cases[] = {
        {"SIGSEGV", [] { std::raise(SIGSEGV); }, SIGSEGV},
        {"SIGABRT", [] { std::abort(); }, SIGABRT},
        {"SIGSEGV", [] { overflow(0); }, SIGSEGV}, // no stack is left
        {"SIGABRT",
         [] {
             KPCrashHandler::installExceptionHandler();
             throw std::runtime_error("caught by nobody");
         },
         SIGABRT},
    };
    for (const auto &each : cases) {
        EXPECT_EQ(crashOf(each.end), -each.signal) << each.name; // the system sees it too
        const QByteArray report = onlyReport();
        EXPECT_TRUE(report.startsWith("Murn ")) << report.constData();
        EXPECT_TRUE(report.contains(QByteArray("Signal: ") + each.name)) << report.constData();
        EXPECT_TRUE(report.contains("murn_app_tests+0x")) << report.constData();
        EXPECT_TRUE(report.contains("last words"));
        EXPECT_FALSE(report.contains("Secret"));
        EXPECT_TRUE(report.endsWith("\n"));
    }
}

TEST(CrashHandler, KeepsItsReportsButNotForEver)
{
    (void)KPCrashReports::takeNew();
    const qsizetype before = KPCrashReports::all().size();
    EXPECT_EQ(crashOf([] { ::_exit(0); }), 0); // an orderly end leaves none
    EXPECT_EQ(KPCrashReports::all().size(), before);
    for (int number = 0; number < KPCrashReports::mostKept + 3; ++number) {
        const QString name = QStringLiteral("/murn-2026010%1-%2.txt")
                                 .arg(number % 9)
                                 .arg(number, 2, 10, QLatin1Char('0'));
        ASSERT_FALSE(XPAtomicFile::write(KPCrashReports::folder() + name, "report"));
    }
    EXPECT_FALSE(KPCrashReports::takeNew().isEmpty());
    EXPECT_EQ(KPCrashReports::all().size(), KPCrashReports::mostKept);
    EXPECT_TRUE(KPCrashReports::takeNew().isEmpty());
}
