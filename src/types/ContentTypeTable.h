#pragma once

#include <QtGlobal>

#include "ContentTypeTableSizes.h" // made at build time: counts and table sizes

// The content-type table as constant data: made from data/content-types.txt at build time by
// generateContentTypes.py, in the program's read-only pages, nothing to set up at start.
// Private to this module; KPContentTypes is the door. Number 0 stands for "no such type".
namespace ContentTypeTable {

// `size` code units of `text` from `offset`; a 0 follows them.
struct Text
{
    quint32 offset;
    quint16 size;
};

// Numbers of `lists` from `offset`: of types, or of extensions or MIME types of a type.
struct List
{
    quint16 offset;
    quint16 size;
};

struct Type
{
    Text identifier;
    Text description;
    List parents;
    List ancestors;  // nearest first, without the type itself
    List extensions; // numbers of `extensions`, preferred first
    List mimeTypes;  // numbers of `mimeTypes`, preferred first
};

// An extension or MIME type (lower case) and the types that declare it, preferred first.
struct Tag
{
    Text name;
    List types;
};

// A four-character file type code and its preferred type.
struct OSType
{
    quint32 code; // first character in the highest byte
    quint16 type;
};

extern const char16_t text[];
extern const quint16 lists[];
extern const Type types[typeCount + 1];
extern const Tag extensions[extensionCount + 1];
extern const Tag mimeTypes[mimeTypeCount + 1];
extern const OSType osTypes[osTypeCount]; // by code

// Row x holds bit y when type x is y or conforms to it.
inline constexpr int wordsPerRow = (typeCount + 64) / 64;
extern const quint64 conformance[(typeCount + 1) * wordsPerRow];

// Open addressing with linear probing; a slot holds the number, 0 when free. The hash is
// 32-bit FNV-1a over lower-case ASCII code units.
extern const quint16 identifierSlots[identifierSlotCount];
extern const quint16 extensionSlots[extensionSlotCount];
extern const quint16 mimeTypeSlots[mimeTypeSlotCount];

} // namespace ContentTypeTable
