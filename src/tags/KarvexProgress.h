#pragma once

#include <QtGlobal>
#include <functional>

// How far a long run over files is, and whether it is to end early. Both may be empty; both are
// called on the thread that works.
struct KarvexProgress
{
    std::function<void(qsizetype done, qsizetype total)> show;
    std::function<bool()> stop;

    bool goesOn(qsizetype done, qsizetype total) const
    {
        if (show)
            show(done, total);
        return !stop || !stop();
    }
};
