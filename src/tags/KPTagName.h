#pragma once

#include "KPPool.h"
#include "PropertyValue.h"

#include <QStringList>
#include <atomic>

template <typename Node>
class XPTextTable;

// A tag: one shared object per key, compared by identity.
//
// The key is a kind prefix plus lower-case text ("user:invoice", "read:keyword") or a content
// type as it stands ("uti:com.adobe.pdf"); only the case of the display name can ever change.
// Tags live for the process. Lower case is the same in every locale; "ß" and "ss" are two tags.
// Lists of tags hold no nullptr; where one slips in it is passed over.
// Threads: any. Known tags are found without a lock; new ones are made one at a time.
class KPTagName
{
public:
    enum Type { None = 0, User = 1, FileType = 4, ReadOnly = 32 };
    using Tags = QList<KPTagName *>;

    // Makes the registry ahead of the first tag, with room for 5000. (Spelled so.)
    static void intializeGlobals();

    // Making tags. Nothing is nullptr.
    // The registered tag of the key; else a new one that shows the text, decomposed.
    static KPTagName *tagNameWithDisplayName(const QString &displayName, const QString &key);
    // `changeCaseOK`: a known tag takes over the case of the text.
    static KPTagName *tagNameForUserEnteredTag(const QString &text, bool changeCaseOK = false);
    static KPTagName *tagNameForUserEnteredTagChangeCaseOK(const QString &text);
    // Makes none. The text is not decomposed: a precomposed spelling does not find the tag that
    // was made from it.
    static KPTagName *tagNameForExistingUserEnteredTag(const QString &text);
    static Tags tagNamesForUserEnteredTags(const QStringList &texts, bool removeDuplicates = false,
                                           bool changeCaseOK = false);
    static Tags tagNamesForUserEnteredString(const QString &text); // "a, b"
    // The texts in the spelling of the tags that exist; empty texts are dropped.
    static QStringList fixCaseForUserEnteredTags(const QStringList &texts);
    static KPTagName *tagNameForReadOnlyTag(const QString &text);
    static Tags tagNamesForReadOnlyTags(const QStringList &texts, bool removeDuplicates);
    // A content type's tag. The file's name does not matter to it.
    static KPTagName *tagNameForUTITag(const QString &uti, const QString &fileName);
    // By st_mode, then by the type table: may block in file calls, see KPFileType.
    static KPTagName *utiTagNameForPath(const QString &path, quint32 fileMode);
    static KPTagName *hiddenUserTag();
    // The tag of that key whatever its composition and case: the key as given first, else the
    // oldest tag of a key that is canonically equivalent in lower case. A text without the
    // prefix of a kind is a user's. Walks all tags. (Spelled so.)
    static KPTagName *searchForUincodeEquivalentTag(const QString &text);

    static int tagTypeFromKeyName(const QString &keyName);

    // Raw tag text made clean: plain spaces off both ends, line breaks out, "%20" to a space;
    // in this order, so that a space made from "%20" stays where it is.
    static QString CleanAndTrimTag(const QString &text);
    // Texts with line breaks, tabs or commas in them in pieces, empty pieces included.
    static QStringList cleanUpTagStringArray(const QStringList &texts);
    static QStringList fixTagStringArray(const QStringList &texts);

    // Lists.
    static Tags removeDuplicates(const Tags &tags);
    static Tags removeTags(const Tags &tags, const Tags &removeThese);
    static QStringList displayStringsForTagNames(const Tags &tags);
    // False, and a line in the log, when a list that came from elsewhere holds a nullptr.
    static bool arrayIsAllKPTagNames(const Tags &tags);

    // Membership on pooled lower-case texts, by identity. All of no tags: true; any: false.
    using PooledTags = QList<KPPooledString>;
    static bool areAllTags(const Tags &tags, const Tags &containedIn);
    static bool pooledLCTag(KPPooledString tag, const PooledTags &inArray);
    static bool areAllLC_PooledTags(const PooledTags &tags, const PooledTags &inArrayOne,
                                    const PooledTags &orTwo, const PooledTags &orThree,
                                    const PooledTags &orFour);
    static bool areAnyLC_PooledTags(const PooledTags &tags, const PooledTags &inArrayOne,
                                    const PooledTags &orTwo, const PooledTags &orThree,
                                    const PooledTags &orFour);

    // Saved forms: display names for user and read-only tags, identifiers for file types.
    static QStringList arrayForSavingUserTags(const Tags &tags);
    static Tags arrayOfDisplayNamesToUserKPTagNames(const QStringList &names);
    static QStringList arrayForSavingReadOnlyTags(const Tags &tags);
    static Tags arrayOfDisplayNamesToReadOnlyKPTagNames(const QStringList &names);
    static QStringList arrayForSavingUTITags(const Tags &tags); // of the file-type tags only
    static Tags arrayOfUTIsToKPTagNames(const QStringList &utis);
    // Lists of tags of any kinds, by name. A user tag is its display name; the other kinds, and
    // a user tag that looks like one of them, have their prefix in front ("uti:com.adobe.pdf").
    // What is no list of texts is dropped when reading.
    using TagDictionary = QMap<QString, Tags>;
    static PropertyValue::Dictionary
    dictionaryForSavingFromKPTagNameDictionary(const TagDictionary &dictionary);
    static TagDictionary
    dictionaryOfKPTagNamesFromDictionary(const PropertyValue::Dictionary &dictionary);

    bool tagInArray(const Tags &tags) const;
    qsizetype tagIndexInArray(const Tags &tags) const; // -1: not in it
    bool isEqual(const KPTagName *other) const { return this == other; }

    // The texts refer to the pool's memory: nothing is copied.
    QString displayName() const;
    QString tagString() const { return displayName(); }
    QString stringValue() const { return displayName(); }
    QString description() const { return displayName(); }
    QString displayNameLC() const { return pooledDisplayNameLC().toString(); }
    KPPooledString pooledDisplayNameLC() const; // for the membership tests
    QString keyName() const { return m_keyName.toString(); }
    QString keyNameActivePart() const; // the key without its kind prefix
    QString uti() const { return keyNameActivePart(); }
    int tagType() const { return m_type; }
    // What starts with a dot comes last.
    QString tagStringForSorting() const;
    // <0, 0, >0: case aside, runs of digits by value however long they are.
    int compareNumerically(const KPTagName *other) const;
    // Whether each word of the filter occurs in the display name, case and diacritics aside. An
    // empty filter passes every tag.
    bool passesSearch(const QString &filterText) const;
    // A file type of text documents, spreadsheets or presentations.
    bool isPopularType() const;
    // Taken only when it equals the present name in lower case.
    void setDisplayName(const QString &name);

    KPTagName(const KPTagName &) = delete;
    KPTagName &operator=(const KPTagName &) = delete;

private:
    friend class KPTagNameRegistry;
    template <typename Node>
    friend class XPTextTable;

    KPTagName(KPPooledString key, KPPooledString displayName, int type);
    quint32 textHash() const { return m_keyName.textHash(); }
    QStringView view() const { return m_keyName.view(); }

    std::atomic<KPPooledString> m_displayName;
    mutable std::atomic<KPPooledString> m_displayNameLC; // empty until first asked for
    const KPPooledString m_keyName;
    const int m_type;
};
