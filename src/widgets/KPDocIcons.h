#pragma once

#include <QIcon>
#include <QString>

// The icons that we bring along: a bare session has no icon theme that one could count on.
namespace KPDocIcons {

// Where the pictures lie as resources; call once before the first icon.
void registerIcons();

// The name of the icon for a content type: "pdf", "spreadsheet", …, "generic".
QString kindForUTI(const QString &uti);
// The icon of a document; for a folder, a link and what is unknown too.
QIcon forUTI(const QString &uti);

// A control's symbol by its file name, in the text colour of the palette at hand whenever it is
// painted; in the accent where it is on, in what stands on the accent where it is selected.
QIcon symbol(const QString &name);

} // namespace KPDocIcons
