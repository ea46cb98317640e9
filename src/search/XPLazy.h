#pragma once

#include <atomic>
#include <memory>

// A value that is made when it is first asked for and then stays.
//
// Threads: any. Two that ask first at the same time both make it; the first done is kept, so
// what is made must not depend on who makes it.
template <typename T>
class XPLazy
{
public:
    XPLazy() = default;
    ~XPLazy() { delete m_value.load(std::memory_order_relaxed); }
    XPLazy(const XPLazy &) = delete;
    XPLazy &operator=(const XPLazy &) = delete;

    template <typename Make>
    const T &get(Make &&make)
    {
        if (const T *known = m_value.load(std::memory_order_acquire))
            return *known;
        auto made = std::make_unique<const T>(make());
        const T *first = nullptr;
        if (m_value.compare_exchange_strong(first, made.get(), std::memory_order_acq_rel))
            first = made.release();
        return *first;
    }

private:
    std::atomic<const T *> m_value = nullptr;
};
