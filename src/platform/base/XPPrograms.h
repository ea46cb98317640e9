#pragma once

#include <QByteArray>

// Where our own programs are that only other programs of ours start.
// Any thread; blocking file calls.
namespace XPPrograms {

// The path of such a program: where it is installed, seen from the running program, else beside
// that (a build tree). Empty when it is nowhere.
QByteArray helper(const char *name);

} // namespace XPPrograms
