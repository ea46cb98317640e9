#pragma once

#include "KPIndexSession.h"

// What `murnctl index` can do; each answers the exit status. Threads: main.
namespace KPIndexActions {
// `operand`: the folder or pattern; empty for those that take none.
using Run = int(const QString &operand, const KPCommandLine &line, KPCommandOutput &output);

Run status;
Run sync;
Run verify;
Run rebuild;
Run pause;
Run resume;

// These change or show the settings of the index (KPIndexSettings.cpp).
Run roots;
Run add;
Run remove;
Run exclude;
Run include;
} // namespace KPIndexActions

struct KPIndexAction
{
    const char *name;
    bool takesOperand;
    KPIndexActions::Run *run;
};
