#pragma once

// qpdf's headers. That of its JSON class, which nothing here uses, asks for a complete type too
// early for clang in C++20: the name alone is enough for the others.
#define JSON_HH
class JSON;

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>
