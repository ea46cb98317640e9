#pragma once

#include <QCollator>

// The order of names for people: the user's language, case aside, numbers by value ("9" before
// "10"). A collator belongs to the thread that made it.
QCollator kpNameCollator();
