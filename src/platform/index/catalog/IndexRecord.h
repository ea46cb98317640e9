#pragma once

#include "IndexItem.h"
#include "PropertyValue.h"
#include "XPError.h"
#include "XPFileInfo.h"
#include "XPPropertyList.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <vector>

// Everything the index holds about one file, without its text.
// Threads: a value.
struct IndexRecord
{
    using Attributes = QMap<QString, PropertyValue>;

    IndexItem item = 0;
    IndexItem parent = 0; // the folder's item; 0: this is a root, and `name` its whole path
    QByteArray name;      // bytes on disk
    XPFileInfo info;
    QString type; // content type identifier
    // What stands on the file under "com.apple.metadata:" (key without that prefix), decoded. Data
    // always is the bytes as they stand there: of what could not be decoded, and of data itself.
    // Where our encoding of a value would be other bytes, those are kept beside it (IndexBytesKey).
    Attributes attributes;
    // What an importer found inside (title, authors, pages …), and the modification time and
    // size it looked at, so that a changed file is imported again.
    Attributes imported;
    qint64 importedModified = 0;
    qint64 importedSize = -1; // -1: not imported yet

    bool operator==(const IndexRecord &) const = default;
};

// How the index keeps values: whatever could be read from a file, and one level more, as the
// attributes of a file are kept as one dictionary.
inline constexpr XPPropertyList::Limits indexValueLimits{
    .depth = XPPropertyList::Limits().depth + 1, .portable = false};

// One step of the index's history. A batch of them is applied whole: in the memory of the
// process that keeps the index, in its journal on disk and, read from there, in every other
// process, always by the same code.
struct IndexChange
{
    enum class Kind : quint8 {
        Put = 1,       // a new item, or all new facts and attributes of a known one
        Move = 2,      // a known item has a new folder or name
        Remove = 3,    // an item is gone (its descendants are removed by changes of their own)
        Import = 4,    // what an importer found; text goes to the text store under the same item
        Attribute = 5, // one attribute that is not on the file ("kMDItemLastUsedDate")
    };
    Kind kind = Kind::Put;
    IndexRecord record; // Put: all; Move: item, parent, name, info; Remove: item; Import: item,
                        // imported…; Attribute: item, attributes

    bool operator==(const IndexChange &) const = default;
};
using IndexBatch = std::vector<IndexChange>;

// A batch as bytes, for the journal: compact, the same on every machine of one byte order.
// decode() takes any bytes and never reads outside them.
QByteArray encodeIndexBatch(const IndexBatch &batch);
XPResult<IndexBatch> decodeIndexBatch(QByteArrayView bytes);
