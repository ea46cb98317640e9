#pragma once

#include "XPPropertyList.h"

#include <cmath>
#include <cstdlib>

// What must hold for every value that the readers accept or a caller builds: each format that
// can hold it gives it back. Stops the fuzzer at the first value for which it does not.

// Small, so that a run spends its time on many inputs.
inline constexpr XPPropertyList::Limits fuzzLimits{
    .bytes = 1 << 20, .depth = 64, .objects = 20'000};

// As XML keeps it: dates without their fraction.
inline PropertyValue inWholeSeconds(const PropertyValue &value)
{
    if (value.kind() == PropertyValue::Kind::Date)
        return PropertyValue::Date{std::floor(value.date().secondsSince2001)};
    if (value.isArray()) {
        PropertyValue::Array array;
        for (const PropertyValue &element : value.array())
            array.append(inWholeSeconds(element));
        return array;
    }
    if (value.isDictionary()) {
        PropertyValue::Dictionary dictionary;
        for (auto it = value.dictionary().begin(); it != value.dictionary().end(); ++it)
            dictionary.insert(it.key(), inWholeSeconds(it.value()));
        return dictionary;
    }
    return value;
}

inline void requireRoundTrip(const PropertyValue &value)
{
    if (const auto binary = XPPropertyList::writeBinary(value, fuzzLimits)) {
        const auto back = XPPropertyList::read(*binary, fuzzLimits);
        if (!back || !(*back == value) || *XPPropertyList::writeBinary(*back) != *binary)
            std::abort();
    }
    if (const auto xml = XPPropertyList::writeXml(value, fuzzLimits)) {
        const auto back = XPPropertyList::read(*xml, fuzzLimits);
        if (!back || !(*back == inWholeSeconds(value)) || *XPPropertyList::writeXml(*back) != *xml)
            std::abort();
    }
}

// A failure says where, within the input.
inline void requireReason(const XPResult<PropertyValue> &result, size_t size)
{
    const XPError &error = result.error();
    if (error.message.isEmpty() || error.offset.value_or(-1) < 0 ||
        error.offset > static_cast<qint64>(size))
        std::abort();
}
