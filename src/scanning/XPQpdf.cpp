#include "XPQpdf.h"

#include "XPFileInfo.h"
#include "XPPath.h"

XPError xpErrorOf(const QPDFExc &failure, const QString &path)
{
    if (failure.getErrorCode() == qpdf_e_password)
        return XPError::make(XPError::Kind::NotPermitted, qtTrId("KPDocumentEncrypted"), path);
    if (failure.getErrorCode() == qpdf_e_damaged_pdf)
        return XPError::make(XPError::Kind::Malformed, qtTrId("KPDocumentDamaged"), path);
    return XPError::make(XPError::Kind::Malformed,
                         QString::fromStdString(failure.getMessageDetail()), path);
}

std::optional<XPError> xpOpenPDF(QPDF &pdf, const QString &path, bool staysOpen)
{
    const auto info = XPFileInfo::read(path);
    if (!info)
        return info.error();
    if (!info->isRegular() && !info->isLink())
        return XPError::make(XPError::Kind::InvalidArgument, qtTrId("KPNotAPDF"), path);
    if (info->size == 0)
        return XPError::make(XPError::Kind::Malformed, qtTrId("KPDocumentEmpty"), path);
    const QByteArray name = XPPath::encode(path);
    try {
        pdf.setSuppressWarnings(true);
        if (staysOpen)
            pdf.processFile(name.constData());
        else
            pdf.processInputSource(std::make_shared<ClosedFileInputSource>(name.constData()));
        if (pdf.isEncrypted())
            return XPError::make(XPError::Kind::NotPermitted, qtTrId("KPDocumentEncrypted"), path);
        if (pdf.getAllPages().empty()) // where most damage shows
            return XPError::make(XPError::Kind::Malformed, qtTrId("KPDocumentWithoutPages"), path);
    } catch (const QPDFExc &failure) {
        return xpErrorOf(failure, path);
    } catch (const std::exception &failure) {
        return XPError::make(XPError::Kind::Io, QString::fromLocal8Bit(failure.what()), path);
    }
    return {};
}
