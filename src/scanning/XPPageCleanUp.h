#pragma once

#include "XPPageEdit.h"

// What is done by itself to a page that was scanned: turned upright by the direction of its text,
// cropped to the paper, straightened.
// Any thread but the main one: a program looks for the text's direction.
struct XPPageCleanUp
{
    bool isBlank = false; // nothing is done to such a page
    XPPageEdit edit;

    struct Wanted
    {
        bool cropAndStraighten = false;
        bool turnUpright = false;
    };
    static XPPageCleanUp of(const QImage &image, const Wanted &wanted);
};
