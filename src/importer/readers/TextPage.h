#pragma once

#include "DocumentAnswer.h"

class DocumentSource;
class QImage;

// The first page of a document that has no picture of its own, laid out from its text: the title
// larger, headings, paragraphs, and a table as a table. So nobody meets a grey icon where there are
// words to know a document by.
// Threads: any, one at a time. Needs a QGuiApplication for its fonts.
namespace TextPage {

// So much text fills a page at any size.
inline constexpr qsizetype neededBytes = 6 << 10;

// Loads the fonts, so that nothing is opened later.
void prepare();

// The page is as high as `pixels`, of the proportion of ISO 216 paper; a document without
// words has an empty one. False: there are no words as it is broken, or as it is no document.
bool draw(const DocumentSource &source, const DocumentAnswer &answer, int pixels, QImage &image);

} // namespace TextPage
