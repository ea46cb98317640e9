#pragma once

#include "PropertyValue.h"

#include <QImage>
#include <QRectF>

// What is done to the picture of a page, kept beside the picture as it came, so that every step
// can be taken back until the document is filed. Any thread: values and pure functions.
struct XPPageEdit
{
    enum class Colours { AsScanned, Grey, BlackAndWhite };

    int quarterTurns = 0;            // clockwise
    double straightenAngle = 0;      // degrees, clockwise, after the turns
    QRectF crop{0, 0, 1, 1};         // in parts of the turned and straightened picture
    double contrastPercentage = 100; // 100: as it came
    Colours colours = Colours::AsScanned;

    bool isNone() const { return *this == XPPageEdit(); }
    bool operator==(const XPPageEdit &) const = default;

    // As it is kept in a file; what cannot be understood there is left as it came.
    PropertyValue::Dictionary saved() const;
    static XPPageEdit fromSaved(const PropertyValue::Dictionary &saved);

    // The picture with all of it done.
    QImage applied(const QImage &image) const;
};
