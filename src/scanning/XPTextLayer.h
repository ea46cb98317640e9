#pragma once

#include "XPError.h"

#include <QImage>
#include <QStringList>
#include <functional>

// The text of pictures of pages, laid invisibly over the pages of a PDF, so that it can be searched
// and selected. The text is recognised by another program ("tesseract").
// Any thread but the main one: it waits for that program.
namespace XPTextLayer {

// What happens to a page that has text already.
enum class Mode {
    Skip,  // it is left as it is
    Redo,  // a layer of ours is made anew; text of the document's own is left
    Force, // it gets a layer beside what it has
};

struct Options
{
    Mode mode = Mode::Skip;
    QStringList languages; // by the program's names; empty: English and the user's own
};

// What a picture of a page should have on its longer side: A4 (ISO 216) at 300 dots an inch.
constexpr int pixelsOfAPage = 3508;

// A page, from 0, as people see it.
using Picture = std::function<XPResult<QImage>(int page)>;

bool isAvailable();
// What is installed, "eng", "deu", …; empty where the program is not.
QStringList languages();

// The quarter turns, clockwise, that make the page's text stand upright; 0 where it does, where no
// text is seen clearly, and where the program cannot tell.
int turnsToUpright(const QImage &image);

// Lays text over pages of the document, which is replaced as a whole once all is done and keeps
// its tags and marks. Answers the pages that got a layer: those that have text, and those that
// failed, got none; where that is all of them and one failed, its error. `progress` is told of each
// page and says whether to go on (Kind::Cancelled). Unsupported where the program is missing; an
// encrypted document is NotPermitted.
XPResult<QList<int>> recognise(const QString &pdfPath, const Picture &picture,
                               const Options &options,
                               const std::function<bool(int page, int pages)> &progress = {});

// Takes our layers off these pages again, all or none: where one of the pages has none any more,
// the document was changed since (InvalidArgument).
std::optional<XPError> remove(const QString &pdfPath, const QList<int> &pages);

} // namespace XPTextLayer
