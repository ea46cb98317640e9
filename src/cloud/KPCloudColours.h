#pragma once

#include "XPCloudItem.h"

#include <QColor>

// The colours of the words of a cloud. Threads: any; values.
namespace KPCloudColours {

// What a cloud's words are painted with: hue from `colour` on, over `colourRange`, by relevance.
struct Parameters
{
    double colour = 0.2;
    double colourRange = 0.4;
    double saturation = 0.5;
    double brightness = 0.4;
    double alpha = 1.0;
};

// How a word stands among the others.
struct Look
{
    double relevance = 0;
    bool isBlack = false;  // all are, or something is about to be dropped on this one
    bool isAbsent = false; // on no document of the results
    bool isBestMatch = false;
};

// "Black" is `text`; every other colour is made to stand out from `background` by a contrast of at
// least 4.5 (WCAG 2.1), lighter on a dark one.
QColor word(const Look &look, const Parameters &parameters, const QColor &text,
            const QColor &background);

// The relative contrast of two opaque colours, 1 to 21.
double contrast(const QColor &one, const QColor &other);
QColor readable(const QColor &colour, const QColor &background);

} // namespace KPCloudColours
