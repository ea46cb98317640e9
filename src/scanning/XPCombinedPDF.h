#pragma once

#include "XPError.h"

#include <QStringList>
#include <functional>

// Several PDF documents (ISO 32000) made into one: the pages of each in the order given, with their
// annotations and form fields. The documents themselves are only read.
// Any thread; blocking file calls. Memory: the structure of all documents, not what is on their
// pages.
namespace XPCombinedPDF {

struct Made
{
    int pages = 0;
    QStringList tags; // what all the documents share; the new one has them
};

struct Failure
{
    QList<XPError> refused; // each document that cannot be taken, with its path; all are looked at
    std::optional<XPError> error; // what else went wrong
};

// Told before each document; says whether to go on (Kind::Cancelled).
using Progress = std::function<bool(qsizetype done)>;

// Makes the document at `toPath`, where no file may be. If one of the documents is encrypted,
// damaged or without pages, or the disk is full, there is none afterwards.
std::variant<Made, Failure> combine(const QStringList &paths, const QString &toPath,
                                    const Progress &progress = {});

} // namespace XPCombinedPDF
