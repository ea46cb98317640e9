#pragma once

#include "KPFileTypeGroup.h"

#include <memory>

// The groups that the program brings along: what a person expects to switch on and off.
// Threads: any.
namespace KPBuiltInGroups {

// Fresh groups in the order they are shown, with their factory state.
QList<std::shared_ptr<KPFileTypeGroup>> groups();
// By the name as shown, or by the English one; nothing when there is none.
std::shared_ptr<KPFileTypeGroup> groupWithName(const QString &name);
// The picture that fits a group: its own, when it has the name or the first type of a built-in
// one, else that of any document.
QString iconFor(const KPFileTypeGroup &group);

} // namespace KPBuiltInGroups
