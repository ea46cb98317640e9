#include "DocumentReader.h"

#include <QImage>

std::optional<DocumentFailure> DocumentReader::picture(const DocumentSource &, int, int,
                                                       QImage &) const
{
    return DocumentFailure::Unsupported;
}
