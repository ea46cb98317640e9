#pragma once

#include <QDeadlineTimer>
#include <QString>
#include <functional>

class QKeyEvent;

// Names typed in a view of documents: the keys of one word, until none came for a while (the
// setting "KPTypeAheadTimeoutDelay", in seconds), go to the next document whose name begins so.
//
// A key that finds nothing is taken too, as it was meant for a name. A blank is a part of a name
// only after its first letter. The first key typed again alone goes on to the next such name.
// Threads: main.
class KPTypeAhead
{
public:
    // How many there are, and a row's name.
    struct Names
    {
        int count = 0;
        std::function<QString(int)> at;
    };

    // False: not a key of a name. `row` is the row found, -1 for none.
    bool take(const QKeyEvent &event, const Names &names, int current, int *row);
    void reset() { m_typed.clear(); }

private:
    int find(const Names &names, int from) const;

    QString m_typed; // folded
    QDeadlineTimer m_end;
};
