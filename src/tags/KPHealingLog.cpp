// KPHealingLog: the cases on disk.
#include "KPHealing.h"

#include "KarvexFileLock.h"
#include "XPAtomicFile.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QCoreApplication>
#include <array>

using Dictionary = PropertyValue::Dictionary;

static constexpr qsizetype mostCases = 5000;

static const QString numberKey = QStringLiteral("number");
static const QString pathKey = QStringLiteral("path");
static const QString timeKey = QStringLiteral("time");
static const QString stateKey = QStringLiteral("state");
static const QString whyKey = QStringLiteral("why");
static const QString attributesKey = QStringLiteral("attributes");
// The attributes whose name is no text, which a dictionary cannot have for a key.
static const QString oddAttributesKey = QStringLiteral("oddAttributes");
static const QString nameKey = QStringLiteral("name");
static const QString bytesKey = QStringLiteral("bytes");

static constexpr std::array stateNames = {"pending", "healed", "undone", "failed"};

static std::optional<KPHealing> caseFrom(const Dictionary &dictionary)
{
    KPHealing healing;
    healing.number = dictionary.value(numberKey).integerValue();
    healing.path = XPPath::decode(dictionary.value(pathKey).data());
    healing.time = dictionary.value(timeKey).date();
    healing.why = dictionary.value(whyKey).string();
    const Dictionary attributes = dictionary.value(attributesKey).dictionary();
    for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
        healing.attributes.insert(attribute.key(), attribute->data());
    const PropertyValue odds = dictionary.value(oddAttributesKey);
    for (const PropertyValue &odd : odds.array())
        healing.attributes.insert(XPPath::decode(odd.dictionary().value(nameKey).data()),
                                  odd.dictionary().value(bytesKey).data());
    const QString state = dictionary.value(stateKey).string();
    for (size_t i = 0; i < stateNames.size(); ++i) {
        if (state == QLatin1String(stateNames[i])) {
            healing.state = static_cast<KPHealing::State>(i);
            return healing.path.isEmpty() ? std::nullopt : std::optional(healing);
        }
    }
    return {};
}

static PropertyValue dictionaryOf(const KPHealing &healing)
{
    Dictionary attributes;
    PropertyValue::Array odd;
    for (auto each = healing.attributes.begin(); each != healing.attributes.end(); ++each) {
        if (each.key().isValidUtf16())
            attributes.insert(each.key(), *each);
        else
            odd.append(Dictionary{{nameKey, XPPath::encode(each.key())}, {bytesKey, *each}});
    }
    const char *state = stateNames[static_cast<size_t>(healing.state)];
    return Dictionary{{numberKey, PropertyValue::integer(healing.number)},
                      {pathKey, XPPath::encode(healing.path)},
                      {timeKey, healing.time},
                      {stateKey, QString::fromLatin1(state)},
                      {whyKey, healing.why},
                      {attributesKey, attributes},
                      {oddAttributesKey, odd}};
}

QString KPHealingLog::path()
{
    return XPFolders::ourApplicationSupport() + QStringLiteral("/healed_tags.plist");
}

XPResult<QList<KPHealing>> KPHealingLog::read()
{
    QList<KPHealing> cases;
    const auto bytes = XPAtomicFile::read(path());
    if (!bytes && bytes.error().kind == XPError::Kind::NotFound)
        return cases;
    if (!bytes)
        return bytes.error();
    const auto list = XPPropertyList::read(*bytes);
    if (!list)
        return list.error();
    for (const PropertyValue &value : list->array()) {
        if (const auto healing = caseFrom(value.dictionary()))
            cases.append(*healing);
    }
    if (!list->isArray() || cases.size() != list->array().size())
        return XPError::malformed(qtTrId("KPHealedNoLog"));
    return cases;
}

std::optional<XPError>
KPHealingLog::change(const std::function<void(QList<KPHealing> &cases)> &change)
{
    const KarvexFileLock lock = KarvexFileLock::named(path());
    auto cases = read();
    if (!cases) {
        if (cases.error().kind != XPError::Kind::Malformed)
            return cases.error();
        if (const auto aside = XPAtomicFile::setAside(path()); !aside)
            return aside.error();
        cases = QList<KPHealing>();
    }
    QList<KPHealing> changed = *cases;
    change(changed);
    if (changed.size() > mostCases)
        changed.remove(0, changed.size() - mostCases);
    PropertyValue::Array array;
    for (const KPHealing &healing : changed)
        array.append(dictionaryOf(healing));
    const auto bytes = XPPropertyList::writeBinary(array);
    return bytes ? XPAtomicFile::write(path(), *bytes) : std::optional(bytes.error());
}

qint64 KPHealingLog::nextNumber(const QList<KPHealing> &cases)
{
    return cases.isEmpty() ? 1 : cases.last().number + 1;
}
