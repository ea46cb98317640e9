#include "KPContentTypes.h"
#include "KPFileType.h"
#include "KPTagName.h"
#include "KPTagNameKey.h"
#include "KPTagNameRegistry.h"
#include "XPPath.h"
#include "XPText.h"

#include <QCoreApplication>
#include <algorithm>
#include <sys/stat.h>

using KPTagNameKey::Buffer;
using KPTagNameKey::textOf;

static constexpr QStringView separators = u"\n\r\t,";
// Nobody types it, and no other text of a tag is cut.
static constexpr QStringView separatorMarker = u"qw34ht8765432299hh";

QString KPTagName::CleanAndTrimTag(const QString &text)
{
    Buffer clean;
    KPTagNameKey::appendCleaned(clean, text);
    return textOf(clean).toString();
}

KPTagName *KPTagName::tagNameWithDisplayName(const QString &displayName, const QString &key)
{
    if (key.isEmpty())
        return nullptr;
    auto &registry = KPTagNameRegistry::instance();
    KPTagName *known = registry.find(key);
    return known != nullptr ? known : registry.add(key, decomposed(displayName));
}

static KPTagName *findUserTag(QStringView text)
{
    const Buffer key = KPTagNameKey::forRawText(KPTagNameKey::userPrefix, text);
    return key.isEmpty() ? nullptr : KPTagNameRegistry::instance().find(textOf(key));
}

// The key by definition: of the decomposed text.
static QString userKey(const QString &decomposedText)
{
    return KPTagNameKey::userPrefix.toString() + lowerCase(decomposedText);
}

KPTagName *KPTagName::tagNameForUserEnteredTag(const QString &text, bool changeCaseOK)
{
    if (KPTagName *known = findUserTag(text)) {
        if (changeCaseOK) {
            const QString clean = CleanAndTrimTag(text);
            if (known->displayName() != clean)
                known->setDisplayName(clean);
        }
        return known;
    }
    const QString name = decomposed(CleanAndTrimTag(text));
    return name.isEmpty() ? nullptr : tagNameWithDisplayName(name, userKey(name));
}

KPTagName *KPTagName::tagNameForUserEnteredTagChangeCaseOK(const QString &text)
{
    return tagNameForUserEnteredTag(text, true);
}

KPTagName *KPTagName::tagNameForExistingUserEnteredTag(const QString &text)
{
    return findUserTag(text);
}

// The tags that `make` makes of the texts, those it makes none of left out.
template <typename Make>
static KPTagName::Tags makeTags(const QStringList &texts, bool removeDuplicates, Make make)
{
    KPTagName::Tags result;
    result.reserve(texts.size());
    for (const QString &text : texts) {
        if (KPTagName *tag = make(text))
            result.append(tag);
    }
    return removeDuplicates ? KPTagName::removeDuplicates(result) : result;
}

KPTagName::Tags KPTagName::tagNamesForUserEnteredTags(const QStringList &texts,
                                                      bool removeDuplicates, bool changeCaseOK)
{
    return makeTags(texts, removeDuplicates, [changeCaseOK](const QString &text) {
        return tagNameForUserEnteredTag(text, changeCaseOK);
    });
}

KPTagName::Tags KPTagName::tagNamesForUserEnteredString(const QString &text)
{
    return tagNamesForUserEnteredTags(text.split(u','), true);
}

QStringList KPTagName::fixCaseForUserEnteredTags(const QStringList &texts)
{
    QStringList result;
    result.reserve(texts.size());
    for (const QString &text : texts) {
        if (text.isEmpty())
            continue;
        const KPTagName *known = findUserTag(text);
        if (known == nullptr)
            known = findUserTag(decomposed(text));
        result.append(known != nullptr ? known->displayName() : text);
    }
    return result;
}

KPTagName *KPTagName::tagNameForReadOnlyTag(const QString &text)
{
    const Buffer key = KPTagNameKey::forRawText(KPTagNameKey::readOnlyPrefix, text);
    // What other programs write for keywords that are not there; a tag in any other case.
    if (textOf(key) == u"read:(null)" && CleanAndTrimTag(text) == u"(null)")
        return nullptr;
    if (KPTagName *known = KPTagNameRegistry::instance().find(textOf(key)))
        return known;
    const QString name = CleanAndTrimTag(text);
    if (name.isEmpty())
        return nullptr;
    return tagNameWithDisplayName(name, textOf(key).toString());
}

KPTagName::Tags KPTagName::tagNamesForReadOnlyTags(const QStringList &texts, bool removeDuplicates)
{
    return makeTags(texts, removeDuplicates, tagNameForReadOnlyTag);
}

// The short name of a type where there is one ("PDF"), else the display name.
static QString shortName(const QString &uti)
{
    const QString name = KPFileType::displayNameForUTI(uti);
    const QString id = QStringLiteral("utiShort_") + name;
    const QString translated = qtTrId(id.toUtf8().constData());
    return translated == id || translated.isEmpty() ? name : translated;
}

// The identifier as it is declared: people and other programs write it in any case.
static QString declaredSpelling(const QString &uti)
{
    static const QString tree = QStringLiteral("tree_");
    const bool isTree = uti.startsWith(tree);
    const QString identifier = isTree ? uti.mid(tree.size()) : uti;
    if (const auto type = KPContentTypes::numberOf(identifier); type != KPContentTypes::none)
        return (isTree ? tree : QString()) + KPContentTypes::identifier(type);
    const bool isDynamic = identifier.startsWith(u"dyn.", Qt::CaseInsensitive);
    return isDynamic ? (isTree ? tree : QString()) + lowerCase(identifier) : uti;
}

static void makeTypeKey(Buffer &key, const QString &uti)
{
    key.clear();
    KPTagNameKey::append(key, KPTagNameKey::fileTypePrefix);
    KPTagNameKey::append(key, uti);
}

KPTagName *KPTagName::tagNameForUTITag(const QString &uti, const QString & /*fileName*/)
{
    if (uti.isEmpty())
        return nullptr;
    Buffer key;
    makeTypeKey(key, uti);
    if (KPTagName *known = KPTagNameRegistry::instance().find(textOf(key)))
        return known;
    const QString declared = declaredSpelling(uti);
    if (declared != uti) {
        makeTypeKey(key, declared);
        if (KPTagName *known = KPTagNameRegistry::instance().find(textOf(key)))
            return known;
    }
    return tagNameWithDisplayName(shortName(declared), textOf(key).toString());
}

KPTagName *KPTagName::utiTagNameForPath(const QString &path, quint32 fileMode)
{
    const QString name = XPPath::fileName(path);
    const QString extension = XPPath::extension(path);
    if (S_ISLNK(fileMode))
        return tagNameForUTITag(KPFileType::aliasUTI, name);
    if (S_ISDIR(fileMode) && extension.isEmpty())
        return tagNameForUTITag(KPFileType::folderUTI, name);
    return tagNameForUTITag(KPFileType::utiForPath(path, extension, fileMode), name);
}

KPTagName *KPTagName::hiddenUserTag()
{
    static KPTagName *const tag = tagNameForUserEnteredTag(QStringLiteral("hidden"));
    return tag;
}

// Decomposed before and after: lower case can compose anew and order marks differently.
static QString equivalenceForm(const QString &key)
{
    return decomposed(lowerCase(decomposed(key)));
}

KPTagName *KPTagName::searchForUincodeEquivalentTag(const QString &text)
{
    QString key = text;
    if (KPTagNameKey::prefixOf(text).isEmpty())
        key = KPTagNameKey::userPrefix.toString() + CleanAndTrimTag(text);
    auto &registry = KPTagNameRegistry::instance();
    if (KPTagName *known = registry.find(key))
        return known;
    const QString form = equivalenceForm(key);
    for (KPTagName *tag : registry.all()) {
        if (equivalenceForm(tag->keyName()) == form)
            return tag;
    }
    return nullptr;
}

QStringList KPTagName::cleanUpTagStringArray(const QStringList &texts)
{
    const bool clean = std::none_of(texts.begin(), texts.end(), [](const QString &text) {
        return std::any_of(text.begin(), text.end(),
                           [](QChar unit) { return separators.contains(unit); });
    });
    return clean ? texts : fixTagStringArray(texts);
}

QStringList KPTagName::fixTagStringArray(const QStringList &texts)
{
    QStringList result;
    for (QString text : texts) {
        for (const QChar separator : separators)
            text.replace(separator, separatorMarker.toString());
        result += text.split(separatorMarker.toString());
    }
    return result;
}
