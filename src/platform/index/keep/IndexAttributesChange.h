#pragma once

#include "PropertyValue.h"

#include <QByteArray>
#include <functional>

// A file whose attributes are others than the index held; a new one had none.
// Threads: a value.
struct IndexAttributesChange
{
    QByteArray path;
    PropertyValue::Dictionary before;
    PropertyValue::Dictionary now;
    bool isSameFile = false; // by inode and birth: false where another one took its place

    using Report = std::function<void(IndexAttributesChange)>;
};
