#pragma once

#include "KPFileTypeGroup.h"
#include "XPError.h"

#include <memory>

// The groups of file types that the user has, stored in a property list of their own.
//
// The built-in groups come first, in their order, then the user's. The file holds all of them;
// a built-in group that is missing there (a newer program has more) is added with its factory
// state. A damaged or foreign file is set aside and named in the log, never overwritten; a file
// that cannot be read for another reason, or cannot be set aside, is left alone and nothing is
// written in this session.
// Threads: main.
class KPFileTypeRegistry
{
public:
    using Groups = QList<std::shared_ptr<KPFileTypeGroup>>;

    static KPFileTypeRegistry &instance();

    // Reads the file; at start, before the settings are registered.
    void readFileTypesPlist();
    // Writes it, when anything changed since; at quit, and after an edit that should not be lost.
    std::optional<XPError> writeFileTypesPlist();
    // The file: in the program's support folder.
    static QString filePath();

    const Groups &fileTypeGroupsArray() const { return m_groups; }
    void setFileTypeGroupsArray(const Groups &groups); // announces
    void addGroup(const std::shared_ptr<KPFileTypeGroup> &group);
    // A built-in group can be switched off, not removed; that and an unknown group answer false.
    bool removeGroup(const std::shared_ptr<KPFileTypeGroup> &group);

    // The built-in group of that name, as it comes with the program; nothing when there is none.
    std::shared_ptr<KPFileTypeGroup> fileTypeGroupWithName(const QString &name) const;

    // The content types of all groups that are switched on, each once.
    QStringList trackingUTIs() const;

    // Posted, without object, when the array or a group in it changed.
    static const QString changedNotification; // "fileTypeGroupsArray"
    void announceChange();

private:
    KPFileTypeRegistry();
    void take(const PropertyValue::Array &stored);

    Groups m_groups;
    bool m_isChanged = false;
    bool m_mayWrite = true;
};
