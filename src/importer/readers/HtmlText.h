#pragma once

#include <QByteArray>
#include <QString>

class DocumentFacts;
class FlowText;

// The text of an HTML page, and what its head says of it.
//
// Scripts, styles and templates are no text; nothing that the page refers to is fetched. A page
// whose elements lie deeper than browsers allow is read to that place.
// Threads: any.
namespace HtmlText {

// Longest page that is parsed, in bytes; the text of a longer one ends there.
inline constexpr qsizetype longest = 8 << 20;

// The page as UTF-8: by its mark, by what it says of itself, by its looks.
QByteArray asUtf8(QByteArrayView page);
// `facts` may be null.
void read(QByteArrayView utf8, FlowText &flow, DocumentFacts *facts);
// A piece of text in which "&amp;" and the like, and tags, may stand: the text alone.
QByteArray plain(QByteArrayView utf8);

} // namespace HtmlText
