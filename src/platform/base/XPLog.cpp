#include "XPLog.h"

Q_LOGGING_CATEGORY(xpLog, "murn", QtInfoMsg)

void setXpDebugLogging(bool on)
{
    QLoggingCategory::setFilterRules(on ? QStringLiteral("murn.debug=true") : QString());
}
