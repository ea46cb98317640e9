// murnctl thumbnail: a picture of a page, drawn by the importer in its cage.
#include "ImportFrame.h"
#include "ImportPagePicture.h"
#include "KPCommandOutput.h"
#include "XPAtomicFile.h"
#include "XPPath.h"

#include <QBuffer>

static const QString usualPixels = QStringLiteral("512");

// The picture as PNG, or why there is none.
static XPResult<QByteArray> pictureOf(const QString &path, int page, int pixels)
{
    const auto image = importPagePicture(path, page, pixels);
    if (!image)
        return image.error();
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image->save(&buffer, "PNG");
    return png;
}

// A number of 1 to `most`; 0: it is none.
static int numberIn(const KPCommandLine &line, const char *option, const QString &usual, int most)
{
    const int number = line.values(option).value(0, usual).toInt();
    return number >= 1 && number <= most ? number : 0;
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const QString to = line.values("-o").value(0);
    const int page = numberIn(line, "--page", QStringLiteral("1"), 1'000'000);
    const int pixels = numberIn(line, "--size", usualPixels, ImportFrame::maximumPixels);
    if (line.operands().size() != 1 || to.isEmpty())
        return kpReportUsage(&kpThumbnailCommand, QStringLiteral("needs one file and -o PNG"));
    if (page == 0 || pixels == 0)
        return kpReportUsage(&kpThumbnailCommand,
                             QStringLiteral("--page and --size want a number from 1 on"));
    const QString &path = line.operands().first();
    const auto picture = pictureOf(XPPath::absolute(path), page, pixels);
    if (!picture)
        output.fail(path, picture.error().reason());
    else if (const auto error = XPAtomicFile::write(XPPath::absolute(to), *picture))
        output.fail(to, error->reason());
    return output.exitStatus();
}

const KPCommand kpThumbnailCommand = {
    "thumbnail",
    "FILE -o PNG [--page N] [--size PX]",
    "Draws a page of a document as a picture.",
    "PDF pages, pictures upright, covers, previews of office files; the first page of any other\n"
    "text is laid out from its words. The document is read in the importer's cage.\n",
    {{"-o", "PNG", "the file to write; one that is there is replaced as a whole"},
     {"--page", "N", "which page, from 1"},
     {"--size", "PX", "the longer side in pixels, up to 4096; usually 512"}},
    run};
