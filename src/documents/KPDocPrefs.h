#pragma once

#include "PropertyValue.h"
#include "XPError.h"
#include "XPMutex.h"

// How documents were last viewed (page, scale and so on): a small file that outlives the program.
//
// By file name (KPDoc::fsName()), so files of one name share it. Of more than 250 documents the
// ones used longest ago are dropped when the file is written. A damaged file is set aside.
// Threads: any. The file is read when first needed and written by writeToFile(): blocking.
class KPDocPrefs
{
public:
    static KPDocPrefs &prefs();
    static QString filePath(); // "docPrefs.plist" in the program's support folder
    // Writes the shared instance's preferences, if they changed.
    static std::optional<XPError> saveState();

    explicit KPDocPrefs(const QString &path) : m_path(path) {}

    // A null object removes the preference.
    void setPref(const QString &docKey, const PropertyValue &toObject, const QString &forKey)
        XP_EXCLUDES(m_mutex);
    PropertyValue getPref(const QString &docKey, const QString &forKey) XP_EXCLUDES(m_mutex);
    // The file as a whole, or left as it was.
    std::optional<XPError> writeToFile() XP_EXCLUDES(m_mutex);

private:
    void readIfNeeded() XP_REQUIRES(m_mutex);
    void dropOldest() XP_REQUIRES(m_mutex);

    const QString m_path;
    XPMutex m_mutex; // held while the file is read or written: that puts it in order
    bool m_isRead XP_GUARDED_BY(m_mutex) = false;
    bool m_isChanged XP_GUARDED_BY(m_mutex) = false;
    bool m_mayWrite XP_GUARDED_BY(m_mutex) = true;
    PropertyValue::Dictionary m_docs XP_GUARDED_BY(m_mutex); // document key to dictionary
};
