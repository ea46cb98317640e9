#include "KPEditSummary.h"

#include "XPPath.h"

#include <QCoreApplication>
#include <QLocale>

static constexpr qsizetype listed = 8;

QString KPEditSummary::reason(const XPError &error)
{
    using Kind = XPError::Kind;
    switch (error.kind) {
    case Kind::NotFound:
        return qtTrId("KPReasonGone");
    case Kind::NotPermitted:
        return qtTrId("KPReasonNotPermitted");
    case Kind::ReadOnly:
        return qtTrId("KPReasonReadOnly");
    case Kind::NoSpace:
        return qtTrId("KPReasonNoSpace");
    case Kind::TooLarge:
        return qtTrId("KPReasonTooLarge");
    case Kind::Unsupported:
        return qtTrId("KPReasonUnsupported");
    case Kind::Malformed:
        return qtTrId("KPReasonUnreadable");
    case Kind::Cancelled:
        return qtTrId("KPReasonCancelled");
    case Kind::InvalidArgument:
    case Kind::Io:
        break;
    }
    return XPPath::printable(error.message);
}

QString KPEditSummary::title(const KPEditReport &report)
{
    const auto failed = static_cast<int>(report.failures.size());
    if (report.total == 1)
        return qtTrId("KPEditFailedOne")
            .arg(XPPath::printable(XPPath::fileName(report.failures.first().path)));
    return qtTrId("KPEditFailedMany", failed).arg(QLocale().toString(report.total));
}

QString KPEditSummary::details(const KPEditReport &report)
{
    if (report.total == 1)
        return reason(report.failures.first());
    QStringList lines;
    for (const XPError &error : report.failures.first(std::min(listed, report.failures.size())))
        lines.append(qtTrId("KPEditFailedLine")
                         .arg(XPPath::printable(XPPath::fileName(error.path)), reason(error)));
    if (const auto more = static_cast<int>(report.failures.size() - listed); more > 0)
        lines.append(qtTrId("KPAndMore", more));
    return lines.join(u'\n');
}
