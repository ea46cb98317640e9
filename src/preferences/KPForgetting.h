#pragma once

#include <QList>
#include <functional>

class QWidget;

// What the program remembers of what its user did, and how it forgets that. Threads: main.
namespace KPForgetting {

struct Memory
{
    const char *text; // its text id
    std::function<void()> forget;
};

const QList<Memory> &memories();

// What it is, with a button that has it forgotten.
QWidget *makeRow(const Memory &memory);

} // namespace KPForgetting
