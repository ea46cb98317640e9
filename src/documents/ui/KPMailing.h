#pragma once

#include "XPMutex.h"

#include <QStringList>

class KPLongWork;

// Documents as attachments of a new message. Asks where they are many or large, as they may be more
// than a mail server takes. Threads: main. Ownership: none; the work outlives it.
namespace KPMailing {

constexpr qsizetype mostUnasked = 20;         // documents
constexpr qint64 mostBytesUnasked = 20 << 20; // together
constexpr qsizetype mostDocuments = 500;      // at all: each keeps its file open

void start(const QStringList &paths, KPLongWork &work) XP_REQUIRES(xpGuiThread);

} // namespace KPMailing
