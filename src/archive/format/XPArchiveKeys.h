#pragma once

#include <QString>

// The keys of an archive's records (docs/formats.md).
namespace XPArchiveKeys {

inline const QString formatKey = QStringLiteral("format");
inline const QString formatName = QStringLiteral("com.brindle.murn.documents");
inline const QString versionKey = QStringLiteral("version");
inline const QString besideKey = QStringLiteral("beside");
inline const QString pathKey = QStringLiteral("path");
inline const QString partKey = QStringLiteral("part");
inline const QString kindKey = QStringLiteral("kind");
inline const QString sizeKey = QStringLiteral("size");
inline const QString modifiedKey = QStringLiteral("modified");
inline const QString rightsKey = QStringLiteral("rights");
inline const QString attributesKey = QStringLiteral("attributes");
inline const QString contentsKey = QStringLiteral("contents");
inline const QString moreKey = QStringLiteral("more");
inline const QString checksumKey = QStringLiteral("crc32");
inline const QString droppedKey = QStringLiteral("dropped");
inline const QString endKey = QStringLiteral("end");
inline const QString endOfPackage = QStringLiteral("package");
inline const QString endOfArchive = QStringLiteral("archive");
inline const QString documentsKey = QStringLiteral("documents");

inline constexpr qint64 version = 1;
inline constexpr qsizetype pieceSize = 512 << 10; // most contents in one record
inline constexpr qsizetype fullMember = 512 << 10;
// Two pieces, and the facts of a file with all attributes that it may have.
inline constexpr qsizetype longestMember = 4 << 20;

} // namespace XPArchiveKeys
