#pragma once

#include <QtGlobal>

// Layout of a binary property list, shared by its reader and its writer: the magic, the objects,
// a table of the objects' offsets, the trailer. All numbers are big-endian. An object begins
// with a marker byte: the kind in the high four bits; in the low four a count, or the power of
// two that gives a number's size. Containers hold references: indexes into the offset table.
namespace XPPropertyListBinary {

inline constexpr char magic[] = "bplist00";
inline constexpr qsizetype magicSize = 8;

enum Marker : quint8 {
    False = 0x08,
    True = 0x09,
    Integer = 0x10,
    Real = 0x20,
    Date = 0x30, // always as 0x33: eight bytes
    Data = 0x40,
    Ascii = 0x50,
    Utf16 = 0x60,
    Array = 0xA0,
    Dictionary = 0xD0, // all references to keys, then all to values
};

// In the low bits of a marker: the count follows as an integer object.
inline constexpr quint8 countFollows = 0x0F;

// Trailer: six bytes that are not used, offset size, reference size, and three eight-byte numbers.
inline constexpr qsizetype trailerSize = 32;
inline constexpr qsizetype trailerPadding = 6;
inline constexpr qsizetype trailerOffsetSize = 6;
inline constexpr qsizetype trailerReferenceSize = 7;
inline constexpr qsizetype trailerObjectCount = 8;
inline constexpr qsizetype trailerTopObject = 16;
inline constexpr qsizetype trailerTableOffset = 24;

} // namespace XPPropertyListBinary
