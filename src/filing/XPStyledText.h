#pragma once

#include "XPError.h"

#include <QByteArray>
#include <QString>

// Text with styles and pictures, from HTML that another program hands over, as an OpenDocument
// text. Pictures are those that came in it ("data:" addresses); nothing is fetched and no file is
// read, scripts and the like are no text.
// Threads: any, in a program with a QGuiApplication; without one it fails (Unsupported), as fonts
// are needed.
namespace XPStyledText {

struct Document
{
    QByteArray openDocument;
    QString characters; // without styles
};

// TooLarge and Malformed for what is no text of a person's: over 16 MiB, or nested too deep.
XPResult<Document> fromHtml(const QByteArray &html);

} // namespace XPStyledText
