#include "DocumentTable.h"

#include <algorithm>

std::optional<QChar> DocumentTable::separatorOf(const QStringList &lines, bool isSeparated)
{
    const auto share = [&lines](QChar c) {
        return std::count_if(lines.begin(), lines.end(),
                             [c](const QString &line) { return line.contains(c); }) *
                   2 >
               lines.size();
    };
    if (share(u'\t'))
        return u'\t';
    if (!isSeparated)
        return {};
    return share(u';') ? u';' : u',';
}

QStringList DocumentTable::cellsOf(const QString &line, QChar separator, qsizetype most)
{
    QStringList cells;
    QString cell;
    bool quoted = false;
    for (const QChar c : line) {
        if (c == u'"')
            quoted = !quoted;
        else if (c == separator && !quoted && cells.size() < most)
            cells.append(std::exchange(cell, {}));
        else
            cell.append(c);
    }
    cells.append(cell);
    return cells;
}
