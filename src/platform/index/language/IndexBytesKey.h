#pragma once

#include <QString>

// Beside an attribute whose value we would write in other bytes than stand on its file, the index
// keeps those bytes, under a key that no attribute on a file can have.
namespace IndexBytesKey {

inline QString of(const QString &attribute)
{
    return attribute + QChar(0);
}

inline bool is(const QString &key)
{
    return key.endsWith(QChar(0));
}

} // namespace IndexBytesKey
