#pragma once

#include <system_error>
#include <thread>

// Runs two independent pieces of work at the same time, one of them on a thread of its own, and
// returns when both are done. Where no thread is to be had, one after the other.
template <typename One, typename Other>
void indexRunBoth(One one, Other other)
{
    std::thread thread;
    try {
        thread = std::thread([&other] { other(); });
    } catch (const std::system_error &) {
        other();
    }
    one();
    if (thread.joinable())
        thread.join();
}
