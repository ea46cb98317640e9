#pragma once

#include <QStringList>

// What typed or pasted text means to a tag editor. Threads: any.
namespace XPTagEntry {

// The tags of `text`, cut at commas, tabs and line ends and cleaned, in order, without those in
// `present` and without repeats. Case alone makes no other tag; one that is among `known`, or that
// the program met before, is spelt as there.
QStringList tags(const QString &text, const QStringList &present, const QStringList &known);

} // namespace XPTagEntry
