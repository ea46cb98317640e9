// KPSearchState: the stored form, a property list.
#include "KPSearchState.h"
#include "KPSearchStateKeys.h"
#include "XPLog.h"
#include "XPPath.h"

#include <algorithm>
#include <cmath>

using namespace KPSearchStateKey;

namespace {

enum class Kind { Texts, Paths, Types, Text, Number, Bool };

const QHash<QString, Kind> &kinds()
{
    static const QHash<QString, Kind> known = {
        {withTags, Kind::Texts},
        {excludeTags, Kind::Texts},
        {searchStrings, Kind::Texts},
        {constraintFolders, Kind::Paths},
        {postConstraintFolders, Kind::Paths},
        {excludeFolders, Kind::Paths},
        {fileList, Kind::Paths},
        {fileUTIs, Kind::Types},
        {fileUTIsToExclude, Kind::Types},
        {dateSearchAlso, Kind::Texts},
        {ratingSearchAlso, Kind::Texts},
        {dateSearch, Kind::Text},
        {ratingSearch, Kind::Text},
        {relativeStart, Kind::Number},
        {relativeEnd, Kind::Number},
        {searchContents, Kind::Bool},
        {searchMetaData, Kind::Bool},
        {searchFileNames, Kind::Bool},
        {fileListGoDeep, Kind::Bool},
        {fileListShowBundleContents, Kind::Bool},
        {showBundleContents, Kind::Bool},
        {finderListingMode, Kind::Bool},
        {alwaysSearchSystemFiles, Kind::Bool},
        {showTaggedDocuments, Kind::Bool},
        {documentsWithNoTagsOnly, Kind::Bool},
        {showManagedDocuments, Kind::Bool},
        {searchUserTags, Kind::Bool},
        {searchReadOnlyKeywords, Kind::Bool},
    };
    return known;
}

bool isNumber(const PropertyValue &value)
{
    return value.kind() == PropertyValue::Kind::Bool ||
           value.kind() == PropertyValue::Kind::Integer ||
           (value.kind() == PropertyValue::Kind::Real && std::isfinite(value.doubleValue()));
}

// A property list holds no text with undecodable bytes: such a path is stored as its bytes.
PropertyValue savedPaths(const PropertyValue &paths)
{
    PropertyValue::Array saved;
    for (const PropertyValue &path : paths.array()) {
        const QByteArray bytes =
            path.string().isValidUtf16() ? QByteArray() : XPPath::encode(path.string());
        saved.append(bytes.isEmpty() ? path : PropertyValue(bytes));
    }
    return saved;
}

PropertyValue nativePaths(const PropertyValue &paths)
{
    PropertyValue::Array native;
    for (const PropertyValue &path : paths.array())
        native.append(path.data().isEmpty() ? path : PropertyValue(XPPath::decode(path.data())));
    return native;
}

bool isOfKind(const PropertyValue &value, Kind kind)
{
    switch (kind) {
    case Kind::Paths:
        return value.isArray() && nativePaths(value).isArrayOfStrings();
    case Kind::Texts:
    case Kind::Types:
        return value.isArrayOfStrings();
    case Kind::Text:
        return value.isString();
    case Kind::Number:
    case Kind::Bool:
        return isNumber(value);
    }
    return false;
}

// Case aside; texts that differ in case alone have an order too, so that equal sets of texts
// become equal lists.
QStringList sortedCaseInsensitively(QStringList texts)
{
    std::sort(texts.begin(), texts.end(), [](const QString &a, const QString &b) {
        const int order = a.compare(b, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : a < b;
    });
    return texts;
}

PropertyValue savedValue(const QString &key, const KPSearchState::Value &value)
{
    if (const auto *tags = std::get_if<KPTagName::Tags>(&value))
        return sortedCaseInsensitively(KPTagName::arrayForSavingUTITags(*tags));
    const auto &plain = std::get<PropertyValue>(value);
    if ((key == withTags || key == excludeTags) && plain.isArrayOfStrings())
        return sortedCaseInsensitively(plain.strings());
    const Kind kind = kinds().value(key, Kind::Text);
    if (kind == Kind::Bool && isNumber(plain))
        return PropertyValue::boolean(plain.boolValue());
    return kind == Kind::Paths && plain.isArray() ? savedPaths(plain) : plain;
}

} // namespace

KPSearchState::SavedDictionary KPSearchState::searchStateDictionary() const
{
    return searchStateDictionaryFromNative(m_dictionary);
}

KPSearchState::SavedDictionary
KPSearchState::searchStateDictionaryFromNative(const NativeDictionary &dictionary)
{
    SavedDictionary saved;
    for (auto entry = dictionary.cbegin(); entry != dictionary.cend(); ++entry)
        saved.insert(entry.key(), savedValue(entry.key(), entry.value()));
    return saved;
}

KPSearchState::NativeDictionary
KPSearchState::nativeDictFromSearchStateDictionary(const SavedDictionary &saved)
{
    NativeDictionary native;
    QStringList dropped;
    for (auto entry = saved.cbegin(); entry != saved.cend(); ++entry) {
        const auto kind = kinds().constFind(entry.key());
        const bool isKnown = kind != kinds().cend(); // else of a newer program: kept for it
        if (isKnown && !isOfKind(entry.value(), *kind))
            dropped.append(entry.key());
        else if (isKnown && *kind == Kind::Types)
            native.insert(entry.key(), KPTagName::arrayOfUTIsToKPTagNames(entry->strings()));
        else if (isKnown && *kind == Kind::Paths)
            native.insert(entry.key(), nativePaths(entry.value()));
        else if (isKnown && *kind == Kind::Bool)
            native.insert(entry.key(), PropertyValue::boolean(entry->boolValue()));
        else
            native.insert(entry.key(), entry.value());
    }
    if (!dropped.isEmpty())
        qCWarning(xpLog, "search state: left out, as the values are of the wrong kind: %ls",
                  qUtf16Printable(XPPath::printable(dropped.join(QStringLiteral(", ")))));

    const auto number = [&](const QString &key) -> std::optional<double> {
        const auto found = native.constFind(key);
        return found == native.cend()
                   ? std::nullopt
                   : std::optional(std::get<PropertyValue>(*found).doubleValue());
    };
    const QString date = relativeDaysToDateString(number(relativeStart), number(relativeEnd));
    if (!date.isEmpty())
        native.insert(dateSearch, PropertyValue(date));
    native.remove(relativeStart);
    native.remove(relativeEnd);
    return native;
}

QString KPSearchState::relativeDaysToDateString(std::optional<double> start,
                                                std::optional<double> /*end*/)
{
    if (!start)
        return {};
    for (const QString &key : {KPSearchDates::today, KPSearchDates::yesterday,
                               KPSearchDates::last7Days, KPSearchDates::last30Days}) {
        if (KPSearchDates::rangeOf(key).start == start)
            return key;
    }
    return KPSearchDates::last365Days;
}
