#pragma once

#include "XPFileDescriptor.h"
#include "XPMutex.h"

#include <atomic>
#include <vector>

// Whether background importing should stand still now, and why. Importers that work look at once,
// in the middle of a file too.
// Threads: any. Outlives what listens to it.
class ImportPause
{
public:
    enum Reason : unsigned {
        Asked = 1,    // the user wants it
        Battery = 2,  // the machine runs on one
        Load = 4,     // others want the processor
        Pictures = 8, // somebody looks at the window and waits for pictures
    };

    void set(Reason reason, bool on) XP_EXCLUDES(m_mutex);
    unsigned reasons() const { return m_reasons.load(std::memory_order_relaxed); }

    // Has a descriptor (an eventfd) made readable by every change.
    class Listener
    {
    public:
        explicit Listener(ImportPause &pause);
        ~Listener();
        Listener(const Listener &) = delete;
        Listener &operator=(const Listener &) = delete;
        int descriptor() const { return m_event.get(); }
        void ring() const;
        void quieten() const;

    private:
        ImportPause &m_pause;
        XPFileDescriptor m_event;
    };

private:
    std::atomic<unsigned> m_reasons = 0;
    XPMutex m_mutex;
    std::vector<const Listener *> m_listeners XP_GUARDED_BY(m_mutex);
};
