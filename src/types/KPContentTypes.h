#pragma once

#include "KPPool.h"

#include <QStringList>
#include <span>

// The table of declared content types (uniform type identifiers): what conforms to what, which
// extensions, MIME types and file type codes stand for which type.
//
// The table is constant data (data/content-types.txt), the same on every machine, free at
// start. Types are numbers here, for speed; the two functions at the end take any identifier,
// also a dynamic or an unknown one. Identifiers, extensions and MIME types are found in any
// case of ASCII letters.
// Threads: any, without locks. Texts refer to constant memory: nothing is allocated.
namespace KPContentTypes {

// A declared type: 1 to count(). Numbers change between releases: never store one.
using Number = quint16;
inline constexpr Number none = 0;

Number count();

Number numberOf(QStringView identifier);
// The same for a pooled identifier, by identity: the way for hot loops.
Number numberOf(KPPooledString identifier);

QString identifier(Number type);  // empty for `none`
QString description(Number type); // English, as in the table

// True when `type` is `other` or conforms to it. False when either is `none`.
bool conforms(Number type, Number other);
// True for types of folders: packages, bundles, "public.folder" itself.
bool isOfFolders(Number type);

std::span<const Number> parents(Number type);
// All types that `type` conforms to, nearest first, without itself.
std::span<const Number> ancestors(Number type);

QString preferredExtension(Number type); // empty: it has none
QStringList extensions(Number type);
QString preferredMimeType(Number type);
QStringList mimeTypes(Number type);

// Declared types, preferred first. The extension is without its dot.
std::span<const Number> typesForExtension(QStringView extension);
std::span<const Number> typesForMimeType(QStringView mimeType);
// The preferred type of a four-character file type code ("PDF ").
Number typeForOSType(QStringView code);

// The declared extensions counted from 1, 0 for an unknown one: an index for caches by extension.
quint16 extensionNumber(QStringView extension);
inline constexpr quint16 maximumExtensions = 4096;
std::span<const Number> typesForExtensionNumber(quint16 number);

// The type, then everything it conforms to, nearest first (what kMDItemContentTypeTree holds).
// A dynamic type has its stated ancestors and those that the MIME database knows for its
// extension; an unknown identifier stands alone; an empty one has an empty tree.
QStringList typeTree(const QString &identifier);
// True when `other` is in the type tree of `identifier`.
bool conformsTo(const QString &identifier, const QString &other);

} // namespace KPContentTypes
