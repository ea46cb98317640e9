#pragma once

#include "DocumentReader.h"

// The preview that office programs put into their packages, where they do: the first of these
// parts that is there, as page 1. Unsupported when there is none.
std::optional<DocumentFailure> packagePreview(const DocumentSource &source,
                                              const QList<QByteArray> &names, int page, int pixels,
                                              QImage &image);
