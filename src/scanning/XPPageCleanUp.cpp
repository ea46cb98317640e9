#include "XPPageCleanUp.h"

#include "XPPageAnalysis.h"
#include "XPTextLayer.h"

XPPageCleanUp XPPageCleanUp::of(const QImage &image, const Wanted &wanted)
{
    XPPageCleanUp found;
    found.isBlank = XPPageAnalysis::isBlank(image);
    if (found.isBlank)
        return found;
    if (wanted.turnUpright)
        found.edit.quarterTurns = XPTextLayer::turnsToUpright(image);
    if (!wanted.cropAndStraighten)
        return found;
    // The crop is in parts of the page as it stands then.
    const QImage upright = found.edit.isNone() ? image : found.edit.applied(image);
    found.edit.crop = XPPageAnalysis::paper(upright);
    found.edit.straightenAngle = -XPPageAnalysis::angle(upright);
    return found;
}
