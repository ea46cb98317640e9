#pragma once

#include <QStringList>
#include <optional>

// A document's text as a table, where it is one: what separates the cells of a line, and the cells.
// Threads: any; functions of their arguments.
namespace DocumentTable {

// Nothing: the text is no table. `isSeparated`: its type says that it is one of separated values.
std::optional<QChar> separatorOf(const QStringList &lines, bool isSeparated);

// At most `most` cells; a quoted one may hold the separator.
QStringList cellsOf(const QString &line, QChar separator, qsizetype most);

} // namespace DocumentTable
