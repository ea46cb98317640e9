#pragma once

#include "KPDocServices.h"
#include "XPFileReport.h"
#include "XPMutex.h"
#include "XPProgress.h"

#include <type_traits>

// Work on the file worker, begun and answered on the main thread.
namespace XPFilingWork {

// Runs `work` there, then `done` here with what it returned.
template <typename Work, typename Done>
void run(Work work, Done done) XP_REQUIRES(xpGuiThread)
{
    auto result = std::make_shared<std::optional<std::invoke_result_t<Work>>>();
    KPDocServices::current().runFileWork([result, work] { result->emplace(work()); },
                                         [result, done] { done(**result); });
}

// The same for work on `total` files that is shown and can be stopped between two of them. `work`
// is called with XPFileRunOptions.
template <typename Work, typename Done>
void runShown(const QString &title, qsizetype total, Work work, Done done) XP_REQUIRES(xpGuiThread)
{
    const auto task = std::make_shared<XPProgressTask>();
    task->title = title;
    task->note = qtTrId("XPStopIsSafe");
    task->total = total;
    XPProgress::current().begin(task);
    XPFileRunOptions options;
    options.progress = [task](qsizetype count) {
        task->done = count;
        return !task->isStopAsked;
    };
    run([work, options] { return work(options); },
        [task, done](const auto &result) {
            XPProgress::current().end(task);
            done(result);
        });
}

} // namespace XPFilingWork
