#pragma once

#include <QByteArrayList>
#include <functional>
#include <set>
#include <utility>
#include <vector>

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
// While work runs, fsync() of what is in the plan's folders answers without writing anything to the
// disk: no test looks at what a power failure leaves, and most of the time would be spent there.
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

// The errnos of a plan, spread over its calls: each call fails with one of them, and each function
// on each of the plan's folders with all. What one function does after a failure on the files of
// one folder hardly depends on how often it was called before, and trying all errnos at each call
// takes as many times longer as there are errnos.
class Errors
{
public:
    explicit Errors(std::vector<int> errors) : m_errors(std::move(errors)) {}

    // Runs `once`, which calls run(), for the next call with the errnos that are due there; false
    // when there was no such call.
    bool tryNext(const std::function<bool(int at, int error)> &once);

private:
    const std::vector<int> m_errors;
    std::set<std::pair<QByteArray, int>> m_tried; // function and folder, errno
    int m_at = 0;
};

// Of the last run: how many calls there were; name and path of the call that failed.
int calls();
QByteArray failed();
// The function, and the number of the plan's folder that holds the path.
QByteArray failedPlace();

} // namespace TestFaults
