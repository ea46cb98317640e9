#pragma once

#include "XPError.h"

#include <QList>
#include <QStringList>
#include <functional>

// The mark of the library's documents on a file: there, there and saying no, or not there at all,
// where the document's type decides.
struct XPMarkChange
{
    std::optional<bool> before;
    std::optional<bool> after;

    bool operator==(const XPMarkChange &) const = default;
};

// What became of one file of a request, or would.
struct XPFileStep
{
    enum class Action {
        Moved,
        Copied,  // the file is where it was as well
        Marked,  // where it lies
        Skipped, // nothing to do
        Failed,
    };

    QString from;
    QString to; // where the document is now; empty when Failed
    Action action = Action::Failed;
    // Why it failed; else what is missing of it: the mark that could not be written.
    std::optional<XPError> problem;
    QString keptAside = {}; // the file that was replaced, where no trash takes it
    QString inTrash = {};   // the same where one took it
    std::optional<XPMarkChange> mark = {};

    bool operator==(const XPFileStep &) const = default;
};

// What became of a request, in the order of the work.
struct XPFileReport
{
    QList<XPFileStep> steps;
    QStringList paths; // what the operation answers: where the documents are
    bool wasStopped = false;
    QString tagList = {}; // the list of what the files carried, where one was written beside them

    // Steps with a problem.
    QList<XPFileStep> problems() const
    {
        QList<XPFileStep> found;
        for (const XPFileStep &step : steps) {
            if (step.problem)
                found.append(step);
        }
        return found;
    }
};

// How a request is carried out.
struct XPFileRunOptions
{
    bool dryRun = false; // say what would be done, and touch nothing
    // Called before each file with the number of those that are through. False stops there.
    std::function<bool(qsizetype done)> progress;
};
