#pragma once

#include <QLoggingCategory>

// The log of every program: Qt's, to standard error or the journal. qCWarning(xpLog) for what a
// user or administrator should see; qCDebug(xpLog) only shows when the setting "KPDebugLogging"
// is on (setXpDebugLogging). File names are logged through XPPath::printable().
Q_DECLARE_LOGGING_CATEGORY(xpLog)

void setXpDebugLogging(bool on);
