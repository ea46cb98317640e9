#pragma once

#include "XPError.h"

#include <QByteArray>
#include <QString>

// Web pages that were made PDF documents: how they are called, where they go, and that they know
// their address. Threads: any; blocking file calls.
namespace XPWebPages {

// Files the document under its title, or its host where it has none: to today's folder, or to
// `folder` where one is named. The address goes to the attribute kMDItemKXBookmarks. Answers the
// path; where only the address cannot be written that is an error after the document was filed.
XPResult<QString> file(const QByteArray &pdf, const QString &title, const QString &address,
                       const QString &folder = {});

} // namespace XPWebPages
