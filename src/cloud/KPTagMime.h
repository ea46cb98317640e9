#pragma once

#include "KPTagName.h"

class QMimeData;

// Tags as they are dragged from a cloud or a list onto documents: their keys under a private type,
// and their names as plain text for other programs. Threads: main.
namespace KPTagMime {

extern const QString type; // "application/x-murn-tags": UTF-8 keys, each ended by NUL

QMimeData *mimeData(const KPTagName::Tags &tags); // the caller owns it
bool hasTags(const QMimeData *data);
KPTagName::Tags tags(const QMimeData *data); // the user's only; what is no key is left out

} // namespace KPTagMime
