#pragma once

#include <QByteArrayList>
#include <functional>

// Lets a file-system call fail, or the process die at it, to see what that leaves behind.
//
// A test program that links murn_test_faults has the C library's file calls pass through here,
// those of Qt and other libraries too. Calls on anything in the plan's folders are counted from 0
// in the order in which they happen, whatever the thread; others pass untouched. A typical test
// runs the work once to count, then once for each call with a fault there, until the fault is not
// met any more, on files made anew each time:
//
//   for (int at = 0;; ++at) {
//       const Scene scene;
//       if (!TestFaults::run({.folders = scene.folders(), .at = at, .error = ENOSPC}, work))
//           break;
//       scene.expectNothingLost();
//   }
//
// What the C library calls inside itself (readdir, realpath, fopen) is not seen.
namespace TestFaults {

struct Plan
{
    QByteArrayList folders; // absolute, without links
    int at = -1;            // the call that fails; -1: none
    int error = 0;          // its errno
    bool isLasting = false; // so do all later calls that would change something
    bool dies = false;      // the process is killed at the call: run it in a child then
};

// False when the work made fewer calls than `at`. One run at a time.
bool run(const Plan &plan, const std::function<void()> &work);

// Of the last run: how many calls there were; name and path of the call that failed.
int calls();
QByteArray failed();

} // namespace TestFaults
