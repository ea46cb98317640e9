#include "KPTagName.h"
#include "KPTagNameKey.h"

QStringList KPTagName::arrayForSavingUserTags(const Tags &tags)
{
    return displayStringsForTagNames(tags);
}

KPTagName::Tags KPTagName::arrayOfDisplayNamesToUserKPTagNames(const QStringList &names)
{
    return tagNamesForUserEnteredTags(names);
}

QStringList KPTagName::arrayForSavingReadOnlyTags(const Tags &tags)
{
    return displayStringsForTagNames(tags);
}

KPTagName::Tags KPTagName::arrayOfDisplayNamesToReadOnlyKPTagNames(const QStringList &names)
{
    return tagNamesForReadOnlyTags(names, false);
}

QStringList KPTagName::arrayForSavingUTITags(const Tags &tags)
{
    QStringList result;
    for (const KPTagName *tag : tags) {
        if (tag != nullptr && tag->tagType() == FileType)
            result.append(tag->uti());
    }
    return result;
}

KPTagName::Tags KPTagName::arrayOfUTIsToKPTagNames(const QStringList &utis)
{
    Tags result;
    for (const QString &uti : utis) {
        if (KPTagName *tag = tagNameForUTITag(uti, QString()))
            result.append(tag);
    }
    return result;
}

static QString savedText(const KPTagName &tag)
{
    const QString name = tag.displayName();
    switch (tag.tagType()) {
    case KPTagName::FileType:
        return tag.keyName();
    case KPTagName::ReadOnly:
        return KPTagNameKey::readOnlyPrefix.toString() + name;
    default:
        return KPTagNameKey::prefixOf(name).isEmpty() ? name
                                                      : KPTagNameKey::userPrefix.toString() + name;
    }
}

static KPTagName *tagFromSavedText(const QString &text)
{
    const QString rest = text.mid(KPTagNameKey::prefixOf(text).size());
    switch (KPTagName::tagTypeFromKeyName(text)) {
    case KPTagName::FileType:
        return KPTagName::tagNameForUTITag(rest, QString());
    case KPTagName::ReadOnly:
        return KPTagName::tagNameForReadOnlyTag(rest);
    default:
        return KPTagName::tagNameForUserEnteredTag(rest);
    }
}

PropertyValue::Dictionary
KPTagName::dictionaryForSavingFromKPTagNameDictionary(const TagDictionary &dictionary)
{
    PropertyValue::Dictionary result;
    for (auto entry = dictionary.begin(); entry != dictionary.end(); ++entry) {
        QStringList texts;
        for (const KPTagName *tag : entry.value()) {
            if (tag != nullptr)
                texts.append(savedText(*tag));
        }
        result.insert(entry.key(), texts);
    }
    return result;
}

KPTagName::TagDictionary
KPTagName::dictionaryOfKPTagNamesFromDictionary(const PropertyValue::Dictionary &dictionary)
{
    TagDictionary result;
    for (auto entry = dictionary.begin(); entry != dictionary.end(); ++entry) {
        if (!entry.value().isArray())
            continue;
        Tags &tags = result[entry.key()];
        for (const QString &text : entry.value().strings()) {
            if (KPTagName *tag = tagFromSavedText(text))
                tags.append(tag);
        }
    }
    return result;
}
