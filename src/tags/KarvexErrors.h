#pragma once

#include "XPError.h"

// The errors of the convention's storage layer: codes and messages are part of its interface.
namespace KarvexErrors {

XPError parameter(const QString &path);     // -1
XPError syncParameter(const QString &path); // -1: setUserTags with something else than tags
XPError permissions(const QString &path);   // -4
XPError tooBig(const QString &path);        // -5
XPError wrongKind(const QString &path);     // -2: readable, but not what the key holds

// -2, with the kind, words and place of the codec's own error.
XPError propertyList(XPError error, const QString &path);

} // namespace KarvexErrors
