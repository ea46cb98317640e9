#include "XPPageCleanUp.h"

#include "XPPageAnalysis.h"
#include "XPTextLayer.h"

XPPageCleanUp XPPageCleanUp::of(const QImage &image, const Wanted &wanted)
{
    XPPageCleanUp found;
    const QImage grey = XPPageAnalysis::reduced(image);
    found.isBlank = XPPageAnalysis::isBlank(grey);
    if (found.isBlank)
        return found;
    if (wanted.turnUpright)
        found.edit.quarterTurns = XPTextLayer::turnsToUpright(image);
    if (!wanted.cropAndStraighten)
        return found;
    const QImage upright = found.edit.isNone() ? grey : found.edit.applied(grey);
    const double angle = -XPPageAnalysis::angle(upright);
    found.edit.crop = XPPageAnalysis::paper(upright, angle);
    found.edit.straightenAngle = angle;
    return found;
}
