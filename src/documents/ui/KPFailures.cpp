#include "KPFailures.h"

#include "XPLog.h"
#include "XPPath.h"
#include "XPPrompts.h"

static constexpr qsizetype mostLines = 8;

static QString linesOf(const QList<XPError> &failures)
{
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
    return lines.join(u'\n');
}

static QString titleOf(const char *titleId, const QList<XPError> &failures)
{
    return qtTrId(titleId, static_cast<int>(failures.size()));
}

void KPFailures::tell(const char *titleId, const QList<XPError> &failures)
{
    if (!failures.isEmpty())
        XPPrompts::current().alert(titleOf(titleId, failures), linesOf(failures));
}

void KPFailures::ask(const char *titleId, const QList<XPError> &failures,
                     std::function<void()> goOn)
{
    if (failures.isEmpty()) {
        goOn();
        return;
    }
    XPPrompts::current().ask({titleOf(titleId, failures),
                              linesOf(failures),
                              {qtTrId("KPContinueWithOthers"), qtTrId("KPCancel")},
                              1},
                             [goOn = std::move(goOn)](int button) {
                                 if (button == 0)
                                     goOn();
                             });
}
