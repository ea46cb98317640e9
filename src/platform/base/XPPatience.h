#pragma once

#include "XPStrandedThreads.h"

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <stop_token>
#include <thread>

// What a file call answers that a disk which is gone may hold up for ever; nothing, when it takes
// longer than `patience` or `stop` asks. `call` runs on a thread of its own, which is left behind
// then, and owns all that it uses. `hasEnded`, if given, tells later whether it still hangs.
// Threads: any; waits.
template <typename Call>
auto xpWithPatience(std::chrono::milliseconds patience, Call call, const std::stop_token &stop = {},
                    std::shared_ptr<std::atomic<bool>> hasEnded = {})
    -> std::optional<decltype(call())>
{
    if (!hasEnded)
        hasEnded = std::make_shared<std::atomic<bool>>(false);
    std::packaged_task<decltype(call())()> task(std::move(call));
    auto answer = task.get_future();
    std::thread thread([task = std::move(task), hasEnded]() mutable {
        task();
        *hasEnded = true;
    });
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!stop.stop_requested() && std::chrono::steady_clock::now() < deadline) {
        if (answer.wait_for(std::chrono::milliseconds(50)) == std::future_status::ready) {
            thread.join();
            return answer.get();
        }
    }
    XPStrandedThreads::adopt(std::move(thread), [hasEnded] { return hasEnded->load(); });
    return std::nullopt;
}
