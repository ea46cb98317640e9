#pragma once

#include <QByteArray>
#include <QStringList>
#include <QUrl>

class QMimeData;

// Files as other programs take them: `file:` addresses (RFC 8089) of the bytes of a path, so that
// a name that is no valid UTF-8 arrives whole. QUrl::fromLocalFile() would lose such bytes.
// Threads: any.
namespace XPFileUrls {

// "file:///…", everything but unreserved characters and "/" percent-encoded. Empty for a text
// that is no path.
QByteArray encoded(const QString &path);
QUrl url(const QString &path);

// What a clipboard or a drag carries for files: `text/uri-list` (RFC 2483), plain text, and the
// form by which file managers know a copy from a cut. The caller owns it.
QMimeData *mimeData(const QStringList &paths);

// The files of this machine that a clipboard or a drag carries, in their order; none that is
// elsewhere. Bytes of names come through as they are.
QStringList paths(const QMimeData *data);
// The same of the bytes of a `text/uri-list`.
QStringList paths(const QByteArray &uriList);

} // namespace XPFileUrls
