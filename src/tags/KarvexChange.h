#pragma once

#include "KarvexAuthenticated.h"
#include "KarvexFileLock.h"

#include <QString>

// Runs a change of one file's attributes ("read, change, write") under the file's lock.
//
// Where it fails for want of rights the user is asked for them, with no lock held, as the question
// may stand for hours; then the change runs again, from its reading on. More than once only when
// the writer that has the rights ended in between.
// Threads: any; blocks while the user is asked. `change` returns a failure or nothing.
template <typename Change>
std::optional<XPError> karvexUnderLock(const QString &path, const Change &change)
{
    constexpr int mostRuns = 3;
    for (int run = 1;; ++run) {
        std::optional<XPError> error;
        {
            const KarvexFileLock lock(path);
            error = change();
        }
        if (!error || run == mostRuns || !KarvexAuthenticated::obtainFor(*error))
            return error;
    }
}
