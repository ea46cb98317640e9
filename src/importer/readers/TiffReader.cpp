#include "TiffReader.h"

#include "DocumentFacts.h"
#include "ImageReader.h"
#include "TiffDocument.h"

std::optional<DocumentFailure> TiffReader::read(const DocumentSource &source,
                                                DocumentAnswer &answer) const
{
    const TiffDocument document(source);
    if (!document.tiff())
        return DocumentFailure::Damaged;
    std::ignore = ImageReader().read(source, answer); // the pages are there all the same
    DocumentFacts facts(answer);
    quint32 width = 0;
    quint32 height = 0;
    if (TIFFGetField(document.tiff(), TIFFTAG_IMAGEWIDTH, &width) &&
        TIFFGetField(document.tiff(), TIFFTAG_IMAGELENGTH, &height))
        facts.setPixelSize(width, height);
    answer.pages = document.pages();
    return {};
}
