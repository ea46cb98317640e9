#pragma once

#include "XPError.h"

// qpdf's headers. That of its JSON class, which nothing here uses, asks for a complete type too
// early for clang in C++20: the name alone is enough for the others.
#define JSON_HH
class JSON;

#include <qpdf/Buffer.hh>
#include <qpdf/ClosedFileInputSource.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFAcroFormDocumentHelper.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

// Why a document cannot be read, in words: that it is encrypted (NotPermitted), or what is wrong
// with it (Malformed).
XPError xpErrorOf(const QPDFExc &failure, const QString &path);

// Reads a document of the user's as far as its pages; one that is empty, encrypted, damaged or
// without pages is an error. It may be kept open while `pdf` lives, or opened for each read.
std::optional<XPError> xpOpenPDF(QPDF &pdf, const QString &path, bool staysOpen = true);
