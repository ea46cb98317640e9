#pragma once

#include "KPContentsReader.h"

class KPDoc;

// What is to be said of one document besides its name and looks, in words: the file's own facts,
// what the index or the importer found in it, where it comes from.
// Threads: main; touches no file.
namespace KPDocumentFacts {

struct Fact
{
    QString name;
    QString value; // printable
    QString link;  // a web address to open; empty: none

    bool operator==(const Fact &) const = default;
};

// `contents`: null while they are not read. `uti`: the content type as far as it is known.
QList<Fact> ofFile(const KPDoc &doc, const QString &uti);
QList<Fact> ofContents(const KPDoc &doc, const KPContentsReader::Contents *contents);
// Where it was downloaded from and the addresses that the user gave it.
QList<Fact> origins(const KPDoc &doc, const KPContentsReader::Contents *contents);
// Every attribute that stands on the file.
QList<Fact> attributes(const KPContentsReader::Contents &contents);
// Pages as far as they are known; 0: none, or not known.
int pages(const KPDoc &doc, const KPContentsReader::Contents *contents);

// A value of a key, from the contents where they were read, else as the index holds it.
PropertyValue value(const KPDoc &doc, const KPContentsReader::Contents *contents,
                    const QString &key);
// A property list's value as people read it.
QString text(const PropertyValue &value);

} // namespace KPDocumentFacts
