#pragma once

#include "PropertyValue.h"
#include "XPError.h"
#include "XPNotificationCenter.h"

#include <memory>

// Settings: saved values over registered ones, in one property-list file per domain.
//
// There is one object per file (two domains may be one file, by a link), which lives for the
// process. A domain is a name such as "com.brindle.murn"; its file is
// $XDG_CONFIG_HOME/DOMAIN.plist, binary unless it was found as XML. Changes are in memory at once
// and on disk at the next synchronise(), which also happens by itself soon after a change when an
// event loop runs, and at the end of the process. synchronise() takes a lock that other processes
// respect (DOMAIN.plist.lock), reads the file, puts this process's changed keys over it and
// replaces the file as a whole: a process only ever writes the keys it changed. A damaged file is
// set aside, never taken for an empty one and overwritten; one that cannot be read is never
// written. Threads: any, save observers, which are added, called and removed on the main thread.
class UserDefaults
{
public:
    // The program's own domain.
    static UserDefaults &standard();
    static UserDefaults &forDomain(const QString &domain);
    static QString pathForDomain(const QString &domain);
    static const QString programDomain; // "com.brindle.murn"

    // Factory values, below the saved ones; later registrations win.
    void registerDefaults(const PropertyValue::Dictionary &values);

    // Saved, unless of another kind than registered; else registered, else null.
    PropertyValue value(const QString &key) const;
    bool boolValue(const QString &key) const { return value(key).boolValue(); }
    double doubleValue(const QString &key) const { return value(key).doubleValue(); }
    qint64 integerValue(const QString &key) const { return value(key).integerValue(); }
    QString stringValue(const QString &key) const { return value(key).string(); }
    bool isSaved(const QString &key) const;

    // A null removes the saved value, so that the registered one shows again. A value that no
    // property list can hold (a null inside, a broken text) is refused with a line in the log.
    void setValue(const QString &key, const PropertyValue &value);
    void remove(const QString &key) { setValue(key, {}); }

    // Merges with the file and writes if this process has changes. On failure the changes stay
    // in memory and are tried again; the result says why.
    std::optional<XPError> synchronise();

    // Observers by key path: "values." + key. Called after each change of what value() answers,
    // also when another process made it and synchronise() brought it in.
    [[nodiscard]] XPObservation addObserver(const QString &keyPath,
                                            std::function<void(const PropertyValue &)> observer);

    ~UserDefaults();
    UserDefaults(const UserDefaults &) = delete;
    UserDefaults &operator=(const UserDefaults &) = delete;

private:
    explicit UserDefaults(const QString &path);
    static void saveAll();
    struct Private;
    std::unique_ptr<Private> d;
};
