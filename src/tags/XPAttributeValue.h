#pragma once

#include "PropertyValue.h"

#include <QExplicitlySharedDataPointer>
#include <typeinfo>

// A value that an attribute cache holds: shared by all who read it, and never changed.
// Threads: any.
class XPAttributeValue : public QSharedData
{
public:
    virtual ~XPAttributeValue() = default;
    virtual bool isEqual(const XPAttributeValue &other) const = 0;
};

// Null: nothing.
using XPAttributeValuePtr = QExplicitlySharedDataPointer<const XPAttributeValue>;

// A value of a given type. Without a transformer a cache holds XPAttributeOf<PropertyValue>.
template <typename T>
class XPAttributeOf final : public XPAttributeValue
{
public:
    explicit XPAttributeOf(T held) : value(std::move(held)) {}
    static XPAttributeValuePtr make(T held)
    {
        return XPAttributeValuePtr(new XPAttributeOf(std::move(held)));
    }
    // What `pointer` holds, good for as long as it; null when that is nothing or of another type.
    static const T *in(const XPAttributeValuePtr &pointer)
    {
        return pointer ? in(*pointer) : nullptr;
    }
    bool isEqual(const XPAttributeValue &other) const override
    {
        const T *same = in(other);
        return same && *same == value;
    }

    const T value;

private:
    // Nothing derives from this class: comparing types is enough, and cheaper than a cast that
    // looks for one.
    static const T *in(const XPAttributeValue &any)
    {
        return typeid(any) == typeid(XPAttributeOf) ? &static_cast<const XPAttributeOf &>(any).value
                                                    : nullptr;
    }
};
