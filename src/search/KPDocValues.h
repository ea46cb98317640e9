#pragma once

#include "IndexLook.h"
#include "KPDocMetaData.h"
#include "KPResultCounts.h"
#include "XPError.h"

#include <array>

// The values of the attributes of one document as its source has them: the index, or the file.
// A value that cannot be read is an error, never "none".
// Threads: a value.
struct KPDocValues
{
    std::array<XPResult<PropertyValue>, KPDocMetaData::attributeCount> raw = {
        PropertyValue(), PropertyValue(), PropertyValue(),
        PropertyValue(), PropertyValue(), PropertyValue()};

    static KPDocValues ofRow(const IndexLook::Row &row);
    // Those of a file, from the disk. Blocking.
    static KPDocValues ofFile(const QString &path);

    bool hasUnreadableTags() const;
    // Why tags or rating cannot be read, in words; empty: they can.
    QString problem() const;
    QStringList tags() const;
    double rating() const;

    // Gives them to the attribute caches; answers what the document counts for.
    KPResultCounts::Values fill(KPPooledString path, KPDocMetaData::Known known) const;
};
