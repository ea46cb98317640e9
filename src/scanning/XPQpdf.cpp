#include "XPQpdf.h"

XPError xpErrorOf(const QPDFExc &failure, const QString &path)
{
    if (failure.getErrorCode() == qpdf_e_password)
        return XPError::make(XPError::Kind::NotPermitted, qtTrId("KPDocumentEncrypted"), path);
    return XPError::make(XPError::Kind::Malformed,
                         QString::fromStdString(failure.getMessageDetail()), path);
}
