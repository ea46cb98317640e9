#pragma once

#include "PropertyValue.h"
#include "XPError.h"

// Property lists as bytes: the binary format ("bplist00") and the XML format (the document type
// "-//Apple//DTD PLIST 1.0//EN"), as both are publicly documented. Our own codecs: the exact
// bytes matter, the input is hostile and small (docs/dependencies.md). Any thread.
//
// The readers accept what any writer of the formats produces, within `Limits`; they never
// recurse deeper than the limit, never follow a cycle and never allocate more than the input
// justifies. Fails with Kind::Malformed (with `offset` in bytes) or Kind::TooLarge.
// Keyed-archive UIDs, integers that do not fit 64 bits signed, and dictionary keys that are no
// strings are malformed here.
namespace XPPropertyList {

struct Limits
{
    qsizetype bytes = 64 << 20;    // longest input and output
    int depth = 64;                // containers inside containers, reading and writing
    qsizetype objects = 4'000'000; // values in the decoded tree, shared ones counted each time
    // Writing, binary: false: also texts that other programs may refuse (halves of surrogate
    // pairs), so that whatever was read can be kept and read again by us.
    bool portable = true;
};

// Either format, told apart by the first bytes.
XPResult<PropertyValue> read(QByteArrayView bytes, const Limits &limits = {});
XPResult<PropertyValue> readBinary(QByteArrayView bytes, const Limits &limits = {});
XPResult<PropertyValue> readXml(QByteArrayView bytes, const Limits &limits = {});

// The same value always gives the same bytes. Strings are stored once. A null anywhere, a string
// that is not well-formed UTF-16 (XML: also characters that XML 1.0 cannot hold) or a tree
// deeper than the limit is refused with Kind::InvalidArgument.
XPResult<QByteArray> writeBinary(const PropertyValue &value, const Limits &limits = {});
XPResult<QByteArray> writeXml(const PropertyValue &value, const Limits &limits = {});

} // namespace XPPropertyList
