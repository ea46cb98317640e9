#pragma once

#include <QString>

class QFontMetrics;

// A name cut in its middle to a width in pixels, so that its beginning, its extension and the
// letters before that (numbers, versions) stay readable. Cut between characters as people see
// them, in the order in which they are read: names of any direction come out right.
// Threads: any.
QString kpElidedName(const QString &name, const QFontMetrics &metrics, int width);
