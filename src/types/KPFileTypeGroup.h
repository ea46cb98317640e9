#pragma once

#include "PropertyValue.h"

#include <QStringList>

// A named group of content types ("Office documents") that people switch on and off and edit.
//
// An entry is a content type, or "tree_" and a content type for all that conforms to it. The
// stored form survives another machine, where a dynamic type may have been declared meanwhile:
// it carries the extension, or the file type code, beside the identifier.
// Threads: main. Ownership: groups in the registry are shared with it; the setters that announce
// post KPFileTypeRegistry::changedNotification.
class KPFileTypeGroup
{
public:
    KPFileTypeGroup(bool enabled, const QString &displayName, bool isBuiltIn);
    // A group read back from its stored form; never built in. Values of the wrong kind count as
    // missing. Without any type it takes those of the built-in group of the same name.
    explicit KPFileTypeGroup(const PropertyValue::Dictionary &dictionary);

    const QString &displayName() const { return m_displayName; }
    bool enabled() const { return m_enabled; }
    bool isBuiltIn() const { return m_isBuiltIn; }
    const QStringList &utiArray() const { return m_utis; } // in the order added, no repeats

    void addUTI(const QString &uti); // empty and known ones are passed over
    void removeUTI(const QString &uti);
    // The entries that a person means by what is typed: an extension (with its dot if it is also a
    // name), a type's identifier or its name in the user's language, in any case of letters. A type
    // that others conform to stands for all of these. Empty: nothing that could be one. Threads:
    // any; the names of types may have to be read from the disk.
    static QStringList entriesForText(const QString &typed);
    // An entry as it is shown.
    static QString nameOfEntry(const QString &entry);
    // Whether a document of this type belongs to the group, or all that such an entry stands for.
    bool containsType(const QString &uti) const;

    // Change the field and announce it, so that whatever shows the groups follows.
    void setTheDisplayName(const QString &name);
    void setTheEnabled(bool enabled);

    // The stored form: "KPDisplayName", "KPEnabled", "KPUTIStringArray".
    PropertyValue::Dictionary dictionary() const;

    // Name and types: changes with both. (Spelled so.)
    QString persistantID() const;
    // Equal are groups of the same types in the same order, whatever their names.
    bool isEqual(const KPFileTypeGroup &other) const { return m_utis == other.m_utis; }
    bool operator==(const KPFileTypeGroup &other) const { return isEqual(other); }

    // A built-in group's English name, by which the registry knows it whatever it is called now.
    const QString &builtInName() const { return m_builtInName; }
    void setBuiltInName(const QString &name) { m_builtInName = name; }
    // Takes over name, switch and types, silently.
    void takeFrom(const KPFileTypeGroup &edited);

    // What the list shows behind the name of a built-in group; empty for others.
    QString builtinString() const;
    // The group's icon: the resource of an SVG picture, and the picture's bytes, to be drawn at
    // any size. The window carries these resources; elsewhere the bytes are empty.
    QString sourceListImage() const;
    QByteArray cgSourceListImageCreate() const;

    static const QString displayNameKey; // "KPDisplayName"
    static const QString enabledKey;     // "KPEnabled"
    static const QString utisKey;        // "KPUTIStringArray"

private:
    void addUTIsForExtensions(const QStringList &extensions);
    void addStored(const QString &entry);
    void repair();

    QString m_displayName;
    bool m_enabled = true;
    bool m_isBuiltIn = false;
    QString m_builtInName;
    QStringList m_utis;
};
