#pragma once

#include "PropertyValue.h"

#include <optional>

// What the XML property-list codec knows about single texts. Any thread; no state.
namespace XPPropertyListXmlText {

// The content of an element as a value; nothing when it does not fit.
using Converter = std::optional<PropertyValue> (*)(const QString &text);

// By the element's name: string, integer, real, date or data; null for every other.
Converter converterFor(QStringView element);

// Where markup stands that no property list needs but that costs the XML parser more than its
// length: a tag with very many attributes (time grows with their square) or declarations in the
// document (a parameter entity is expanded without limit). Texts that are not well-formed may
// pass: the parser refuses them at the same place.
std::optional<qsizetype> unsuitableMarkup(QStringView document);

// True when every character may stand in XML 1.0; false for broken surrogate pairs too.
bool isRepresentable(QStringView text);

// UTF-8 with what must not stand in an element's text escaped.
void appendEscaped(QByteArray &output, const QString &text);

// As property lists spell them: shortest form that reads back the same; nan, ±infinity.
QByteArray fromReal(double value);

} // namespace XPPropertyListXmlText
