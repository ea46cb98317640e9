#pragma once

#include <QString>
#include <QStringList>
#include <optional>

// Dynamic type identifiers: names for types that nobody declared, made from a tag of the file.
//
// "dyn.a" and the base-32 form (alphabet a-z without i, j, l, o and 0-9 in that order of value)
// of a text such as "?0=6:1=xyz": conforms to (0) public.data (6), file name extension (1)
// "xyz". Well-known names are single digits, everything else stands in full. The form is the
// publicly known one, so that identifiers made on other systems are understood. Any thread.
struct KPDynamicType
{
    QStringList conformsTo;
    QString tagClass; // "public.filename-extension", "com.apple.ostype", "public.mime-type", …
    QString tag;      // decoded as a path is: undecodable bytes as lone surrogates

    static bool isDynamic(QStringView identifier) { return identifier.startsWith(u"dyn."); }

    // The identifier for an extension of files. The text is taken as it is, case included; empty
    // for an empty text and for one that no file name can hold.
    static QString forExtension(const QString &extension);

    // Nothing when the identifier is not of this form, whatever it holds instead.
    static std::optional<KPDynamicType> decode(QStringView identifier);

    // The extension or the file type code that the identifier was made from; empty: none.
    static QString extensionOf(QStringView identifier);
    static QString osTypeOf(QStringView identifier);
};
