#pragma once

#include "PropertyValue.h"
#include "XPError.h"

#include <QStringList>
#include <atomic>
#include <functional>

// Whether a refused write may ask the user for administrator rights. On by default; whoever must
// not show dialogs (a background synchronisation) clears it and puts the old value back.
extern std::atomic<bool> gAllowKarvexAuthenticationDialogs;

// Tags, ratings and other facts of a file, on the file itself: the storage layer.
//
// Values are property lists in extended attributes under the open convention's names
// ("com.apple.metadata:" + key), binary, at most 4096 bytes. Readers accept binary and XML, from
// any writer. Links are never followed. Nothing above this class touches attributes.
//
// No lock is held while the user is asked for administrator's rights (KarvexChange.h).
//
// Errors: domain "karvex", code -1 (parameter), -2 (cannot be serialised or parsed, or parsed to
// another kind than the key holds), -5 (too big); else the POSIX error, EACCES too when asking for
// administrator's rights did not help (KarvexAuthenticated). A missing attribute and one of no
// bytes are no error: they read as null, an empty list or 0. Bytes that cannot be read always are
// one, so that nobody takes them for "none" and writes over them.
// Threads: any. Operations that read and then write hold a lock per file (KarvexFileLock) that
// other processes of ours respect, so that concurrent additions all survive. Blocking file calls.
class Karvex
{
public:
    // Keys of the convention.
    static const QString userTagsKey;     // "kMDItemKXUserTags": array of strings
    static const QString systemTagsKey;   // "kMDItemUserTags": where the system has its own list
    static const QString userTagTimeKey;  // "kMDItemKXUserTagTime": date
    static const QString starRatingKey;   // "kMDItemStarRating": number, above 0, at most 5
    static const QString ratingTimeKey;   // "kMDItemKXRatingTime": date
    static const QString managedKey;      // "kMDItemKXManaged": true
    static const QString documentDateKey; // "kMDItemKXDocumentDate": date
    static const QString bookmarksKey;    // "kMDItemKXBookmarks": array of strings
    static const QString commentKey;      // "kMDItemFinderComment": string

    static constexpr qsizetype maximumValueSize = 4096;

    // Full attribute names for a key.
    static QString spotlightKey(const QString &key); // "com.apple.metadata:" + key
    static QString karvexKey(const QString &key);    // "org.karvexinfo:" + key; read, never written

    // Low level: `key` is the full attribute name; a null value removes the attribute.
    static std::optional<XPError> setXAttr(const PropertyValue &value, const QString &key,
                                           const QString &path);
    static XPResult<PropertyValue> getXAttr(const QString &key, const QString &path);

    // What stands there, whether it can be understood or not; nothing: no such attribute.
    static XPResult<std::optional<QByteArray>> getBytes(const QString &key, const QString &path);

    // The same with a bare key; what the desktop keeps too is mirrored (KarvexMirror).
    static std::optional<XPError> setXAttrMetaData(const PropertyValue &value, const QString &key,
                                                   const QString &path);
    static XPResult<PropertyValue> getXAttrMetaData(const QString &key, const QString &path);

    static std::optional<XPError> setNSArrayMetaData(const PropertyValue &value, const QString &key,
                                                     const QString &path);
    // Null when the value is no array.
    static XPResult<PropertyValue> getNSArrayMetaData(const QString &key, const QString &path);
    // Appends the elements not present yet; writes only if there were any.
    static std::optional<XPError> addToNSArrayMetaData(const PropertyValue &values,
                                                       const QString &key, const QString &path);
    static std::optional<XPError> setString(const PropertyValue &value, const QString &keyName,
                                            const QString &path);
    static XPResult<PropertyValue> getString(const QString &keyName, const QString &path);

    // User tags as they are stored; our own writers store them decomposed. A value that is no
    // array of strings is an error. Every writer sets the tag time too, and puts the old time
    // back when the tags cannot be written.
    static XPResult<QStringList> getUserTags(const QString &path);
    static std::optional<XPError> setUserTags(const PropertyValue &tags, const QString &path);
    static std::optional<XPError> setUserTags(const PropertyValue &tags, const QString &path,
                                              PropertyValue::Date date);
    static std::optional<XPError> addUserTags(const QStringList &tags, const QString &path);
    static std::optional<XPError> clearUserTags(const QStringList &tags, const QString &path);
    // Replaces the tags by what `change` makes of them, under the file's lock, unless that answers
    // nothing. The list is given as it will be stored. It runs again when rights were asked for.
    using TagsChange = std::function<std::optional<QStringList>(const QStringList &current)>;
    static std::optional<XPError> changeUserTags(const TagsChange &change, const QString &path);
    static XPResult<QStringList> getAppleTags(const QString &path);
    static std::optional<XPError> setAppleTags(const QStringList &tags, const QString &path);

    // The tag editor over several files: what all share, and its commit. A file that fails does
    // not stop the commit of the others; the first error is returned.
    static XPResult<QStringList> getCommonUserTags(const QStringList &paths);
    static std::optional<XPError> setCommonUserTags(const QStringList &paths,
                                                    const QStringList &originalCommonTags,
                                                    const QStringList &replaceWith);

    // 0 when unrated. Setting clips to 5; 0 or less removes; not a number is refused. Reading
    // gives a number as another writer stored it, even outside 0 to 5, but always a finite one.
    static std::optional<XPError> setRating(double rating, const QString &path);
    static XPResult<double> getRating(const QString &path);

    static bool validateAsArrayOfStrings(const PropertyValue &value);

    // Tag lists as they are stored: decomposed, the first spelling of each tag (by lower case)
    // kept in its place. Case is never changed.
    static QStringList removeDuplicateTags(const PropertyValue &tags);
    static QStringList decomposeArrayOfStrings(const PropertyValue &tags);
    // The tags of `tags` (lower-case form to tag) in the order and spelling of `hint`, the
    // rest after.
    static QStringList orderedArrayWithDict(const QHash<QString, QString> &tags,
                                            const QStringList &hint);

    // Whether the platform keeps a tag list of its own; the key that a query uses for tags.
    static bool MavericksOrLater();
    static QString tagsToSearchFor();

    // Announces the keys we write to other programs of the convention, for two seconds: a file
    // that the event loop removes again, at the latest with the application object. For programs
    // that stay; main thread only.
    static void registerUsualKXAttributes();
    static void registerKXAttributes(const PropertyValue::Dictionary &samples,
                                     const QString &appName);
    // Removes nothing outside the folder of the schema register.
    static void removeSchemaFile(const QString &path);

    static QString errnoString(int number);
};
