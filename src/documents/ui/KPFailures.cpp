#include "KPFailures.h"

#include "XPLog.h"
#include "XPPath.h"
#include "XPPrompts.h"

static constexpr qsizetype mostLines = 8;

void KPFailures::tell(const char *titleId, const QList<XPError> &failures)
{
    if (failures.isEmpty())
        return;
    QStringList lines;
    for (const XPError &error : failures) {
        qCWarning(xpLog).noquote() << XPPath::printable(error.path) << error.message;
        const QString name = XPPath::printable(XPPath::fileName(error.path));
        if (lines.size() < mostLines)
            lines.append(name.isEmpty() ? error.reason()
                                        : name + QStringLiteral(": ") + error.reason());
    }
    const auto others = static_cast<int>(failures.size() - lines.size());
    if (others > 0)
        lines.append(qtTrId("KPAndOthers", others));
    XPPrompts::current().alert(qtTrId(titleId, static_cast<int>(failures.size())),
                               lines.join(u'\n'));
}
