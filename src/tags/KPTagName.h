#pragma once

#include "KPPool.h"
#include "PropertyValue.h"

#include <QStringList>
#include <array>
#include <atomic>

// A tag: one shared object per key, compared by identity.
//
// The key is a kind prefix plus lower-case text ("user:invoice", "uti:com.adobe.pdf",
// "read:keyword"); only the case of the display name can ever change. Tags live for the process.
// Threads: any; the registry has its own locks.
class KPTagName
{
public:
    enum Type { None = 0, User = 1, FileType = 4, ReadOnly = 32 };

    // Makes the registry; call once at start, before threads. (Spelled so.)
    static void intializeGlobals();

    // Making tags. Nothing is nullptr.
    static KPTagName *tagNameWithDisplayName(const QString &displayName, const QString &key);
    static KPTagName *tagNameForUserEnteredTag(const QString &text, bool changeCaseOK = false);
    static KPTagName *tagNameForUserEnteredTagChangeCaseOK(const QString &text);
    static KPTagName *tagNameForExistingUserEnteredTag(const QString &text);
    static QList<KPTagName *> tagNamesForUserEnteredTags(const QStringList &texts,
                                                         bool removeDuplicates = false,
                                                         bool changeCaseOK = false);
    static QList<KPTagName *> tagNamesForUserEnteredString(const QString &text);
    static QStringList fixCaseForUserEnteredTags(const QStringList &texts);
    static KPTagName *tagNameForReadOnlyTag(const QString &text);
    static QList<KPTagName *> tagNamesForReadOnlyTags(const QStringList &texts,
                                                      bool removeDuplicates);
    static KPTagName *tagNameForUTITag(const QString &uti, const QString &fileName);
    static KPTagName *utiTagNameForPath(const QString &path, quint32 fileMode);
    static KPTagName *hiddenUserTag();
    static KPTagName *searchForUincodeEquivalentTag(const QString &text);

    static int tagTypeFromKeyName(const QString &keyName);

    // Raw tag text made clean: plain spaces off both ends, line breaks out, "%20" to a space.
    static QString CleanAndTrimTag(const QString &text);
    static QStringList cleanUpTagStringArray(const QStringList &texts);
    static QStringList fixTagStringArray(const QStringList &texts);

    // Lists.
    static QList<KPTagName *> removeDuplicates(const QList<KPTagName *> &tags);
    static QList<KPTagName *> removeTags(const QList<KPTagName *> &tags,
                                         const QList<KPTagName *> &removeThese);
    static QStringList displayStringsForTagNames(const QList<KPTagName *> &tags);

    // Membership on pooled lower-case texts, by identity.
    using PooledTags = QList<KPPooledString>;
    static bool areAllTags(const QList<KPTagName *> &tags, const QList<KPTagName *> &containedIn);
    static bool pooledLCTag(KPPooledString tag, const PooledTags &inArray);
    static bool areAllLC_PooledTags(const PooledTags &tags, const PooledTags &inArrayOne,
                                    const PooledTags &orTwo, const PooledTags &orThree,
                                    const PooledTags &orFour);
    static bool areAnyLC_PooledTags(const PooledTags &tags, const PooledTags &inArrayOne,
                                    const PooledTags &orTwo, const PooledTags &orThree,
                                    const PooledTags &orFour);

    QString displayName() const;
    QString tagString() const { return displayName(); }
    QString stringValue() const { return displayName(); }
    QString description() const { return displayName(); }
    QString displayNameLC() const;
    QString keyName() const;
    QString keyNameActivePart() const;
    QString uti() const { return keyNameActivePart(); }
    int tagType() const;
    QString tagStringForSorting() const;
    int compareNumerically(const KPTagName *other) const; // <0, 0, >0
    bool passesSearch(const QString &filterText) const;
    bool isPopularType() const;
    // Taken only when it equals the present name in lower case.
    void setDisplayName(const QString &name);

    KPTagName(const KPTagName &) = delete;
    KPTagName &operator=(const KPTagName &) = delete;

private:
    KPTagName() = default;
};
