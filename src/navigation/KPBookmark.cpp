#include "KPBookmark.h"

#include "XPPath.h"
#include "XPPropertyList.h"

#include <QCoreApplication>
#include <QSet>
#include <QUuid>

namespace {

const QString identifierKey = QStringLiteral("identifier");
const QString titleKey = QStringLiteral("title");
const QString stateKey = QStringLiteral("searchState");
const QString childrenKey = QStringLiteral("children");

QString newIdentifier()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

// A property list holds no text that is not well formed, and a title is one line.
QString cleanTitle(const QString &title)
{
    const QString line = title.simplified();
    return line.isValidUtf16() ? line : XPPath::printable(line);
}

} // namespace

KPBookmark KPBookmark::search(const QString &title, const KPSearchState &state)
{
    return {newIdentifier(), cleanTitle(title), false, state.searchStateDictionary(), {}};
}

KPBookmark KPBookmark::folder(const QString &title, const QList<KPBookmark> &children)
{
    return {newIdentifier(), cleanTitle(title), true, {}, children};
}

KPSearchState::Ptr KPBookmark::searchState() const
{
    return isFolder ? nullptr : KPSearchState::searchStateWithDictionary(state);
}

// NOLINTNEXTLINE(misc-no-recursion): the depth of a property list is limited
const KPBookmark *KPBookmark::find(const QString &wanted) const
{
    if (identifier == wanted)
        return this;
    for (const KPBookmark &child : children) {
        if (const KPBookmark *found = child.find(wanted))
            return found;
    }
    return nullptr;
}

// NOLINTNEXTLINE(misc-no-recursion): the depth of a property list is limited
KPBookmark *KPBookmark::find(const QString &wanted)
{
    if (identifier == wanted)
        return this;
    for (KPBookmark &child : children) {
        if (KPBookmark *found = child.find(wanted))
            return found;
    }
    return nullptr;
}

// NOLINTNEXTLINE(misc-no-recursion): the depth of a property list is limited
PropertyValue KPBookmark::saved() const
{
    PropertyValue::Dictionary dictionary = others;
    dictionary.insert(identifierKey, identifier);
    dictionary.insert(titleKey, cleanTitle(title));
    if (!isFolder) {
        dictionary.insert(stateKey, state);
        return dictionary;
    }
    PropertyValue::Array entries;
    for (const KPBookmark &child : children)
        entries.append(child.saved());
    entries += unknown;
    dictionary.insert(childrenKey, entries);
    return dictionary;
}

// NOLINTNEXTLINE(misc-no-recursion): the depth of a property list is limited
std::optional<KPBookmark> KPBookmark::read(const PropertyValue &saved)
{
    KPBookmark bookmark;
    bookmark.others = saved.dictionary();
    const PropertyValue children = bookmark.others.take(childrenKey);
    const PropertyValue state = bookmark.others.take(stateKey);
    bookmark.isFolder = children.isArray();
    if (!bookmark.isFolder && !state.isDictionary())
        return {};
    bookmark.state = state.dictionary();
    bookmark.title = bookmark.others.take(titleKey).string();
    bookmark.identifier = bookmark.others.take(identifierKey).string();
    for (const PropertyValue &entry : children.array()) {
        if (auto child = read(entry))
            bookmark.children.append(std::move(*child));
        else
            bookmark.unknown.append(entry);
    }
    return bookmark;
}

// --- Files

// NOLINTNEXTLINE(misc-no-recursion): the depth of a property list is limited
static void giveIdentifiers(KPBookmark &above, QSet<QString> &known)
{
    for (KPBookmark &bookmark : above.children) {
        // Made of where it stands, so that a file that lacks them can be read twice.
        while (bookmark.identifier.isEmpty() || known.contains(bookmark.identifier))
            bookmark.identifier =
                QUuid::createUuidV5(QUuid(), above.identifier + QString::number(known.size()))
                    .toString(QUuid::WithoutBraces);
        known.insert(bookmark.identifier);
        giveIdentifiers(bookmark, known);
    }
}

XPResult<KPBookmarkFile::Contents> KPBookmarkFile::parse(QByteArrayView bytes)
{
    const auto value = XPPropertyList::read(bytes);
    if (!value)
        return value.error();
    PropertyValue::Dictionary others = value->dictionary();
    const PropertyValue list = others.take(listKey);
    if (!list.isArray())
        return XPError::malformed(qtTrId("KPBookmarksNoList"));
    const qint64 written = others.take(versionKey).integerValue();
    auto root = KPBookmark::read(PropertyValue::Dictionary{{childrenKey, list}});
    Contents contents{std::move(*root), written > version};
    contents.root.others = others;
    QSet<QString> known;
    giveIdentifiers(contents.root, known);
    return contents;
}

XPResult<QByteArray> KPBookmarkFile::bytes(const KPBookmark &root)
{
    PropertyValue::Dictionary dictionary = root.others;
    dictionary.insert(versionKey, PropertyValue::integer(version));
    dictionary.insert(listKey, root.saved().dictionary().value(childrenKey));
    auto xml = XPPropertyList::writeXml(dictionary);
    // XML cannot hold every character of a name; the binary form can.
    return xml ? xml : XPPropertyList::writeBinary(dictionary);
}
