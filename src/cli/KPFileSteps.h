#pragma once

#include "KPCommandOutput.h"
#include "KPInterrupt.h"
#include "KPProgressLine.h"
#include "XPFileReport.h"

// What the commands that move and mark files share. Threads: main.
namespace KPFileSteps {

// Absolute and without links on the way to it: the form in which the managed folder is known. A
// link in the last place stays one.
QString operand(const QString &word);
QStringList operands(const QStringList &words);

// With progress on the terminal, stopped by an interrupt.
XPFileRunOptions options(bool dryRun, qsizetype total, KPInterrupt &interrupt,
                         KPProgressLine &progress);

// Lines "FROM -> TO" (with --print0 the two, each with its NUL), or the path alone where it
// stays; with --json a list of objects. Problems are failures of the command. Answers the exit
// status.
int print(const XPFileReport &report, KPCommandOutput &output);

} // namespace KPFileSteps
