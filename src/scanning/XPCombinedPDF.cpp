#include "XPCombinedPDF.h"

#include "KPCommonTags.h"
#include "KPDocEdits.h"
#include "XPDocumentFile.h"
#include "XPPath.h"
#include "XPQpdf.h"

#include <list>

using Failure = XPCombinedPDF::Failure;
using Kind = XPError::Kind;

namespace {

using Sources = std::list<QPDF>; // what is copied from them is read when the document is written

// So many are held open; more of them are opened for each read, which is slower.
constexpr qsizetype mostOpen = 200;

} // namespace

static void addPages(QPDF &pdf, QPDF &source)
{
    QPDFAcroFormDocumentHelper fields(pdf);
    QPDFAcroFormDocumentHelper theirs(source);
    const std::vector<QPDFObjectHandle> pages = source.getAllPages();
    for (const QPDFObjectHandle &page : pages) {
        pdf.addPage(page, false);
        if (theirs.hasAcroForm())
            fields.fixCopiedAnnotations(pdf.getAllPages().back(), page, theirs);
    }
}

static std::optional<XPError> write(Sources &sources, const QString &toPath, int *pages)
{
    try {
        QPDF pdf;
        pdf.emptyPDF();
        for (QPDF &source : sources)
            addPages(pdf, source);
        *pages = static_cast<int>(pdf.getAllPages().size());
        return xpWriteNewPDF(pdf, toPath);
    } catch (const QPDFExc &failure) {
        return xpErrorOf(failure, XPPath::decode(QByteArray::fromStdString(failure.getFilename())));
    } catch (const std::exception &failure) {
        return XPError::make(Kind::Io, QString::fromLocal8Bit(failure.what()), toPath);
    }
}

std::variant<XPCombinedPDF::Made, Failure>
XPCombinedPDF::combine(const QStringList &paths, const QString &toPath, const Progress &progress)
{
    Failure failure;
    Sources sources;
    for (const QString &path : paths) {
        if (progress && !progress(static_cast<qsizetype>(sources.size())))
            return Failure{{}, XPError::make(Kind::Cancelled, QStringLiteral("cancelled"))};
        if (const auto error = xpOpenPDF(sources.emplace_back(), path, paths.size() <= mostOpen))
            failure.refused.append(*error);
    }
    if (!failure.refused.isEmpty())
        return failure;
    Made made;
    // Looked at before: a document whose tags cannot be read shares none with the others.
    const KPCommonTags tags = KPCommonTags::read(paths);
    if (tags.unreadable.isEmpty())
        made.tags = tags.common;
    if (const auto error = write(sources, toPath, &made.pages))
        return Failure{{}, error};
    if (!made.tags.isEmpty()) {
        // The document stays without them on a disk that keeps no attributes.
        if (const auto error = KPDocEdits::setUserTags(made.tags, toPath))
            made.tags.clear();
    }
    return made;
}
