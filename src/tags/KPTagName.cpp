#include "KPTagName.h"

#include "KPContentTypes.h"
#include "KPTagNameKey.h"
#include "KPTagNameRegistry.h"
#include "XPLog.h"
#include "XPText.h"

#include <QSet>
#include <QStringTokenizer>
#include <algorithm>
#include <array>

KPTagName::KPTagName(KPPooledString key, KPPooledString displayName, int type)
    : m_displayName(displayName), m_keyName(key), m_type(type)
{
}

void KPTagName::intializeGlobals()
{
    (void)KPTagNameRegistry::instance();
}

int KPTagName::tagTypeFromKeyName(const QString &keyName)
{
    const QStringView prefix = KPTagNameKey::prefixOf(keyName);
    if (prefix == KPTagNameKey::userPrefix)
        return User;
    if (prefix == KPTagNameKey::fileTypePrefix)
        return FileType;
    return prefix == KPTagNameKey::readOnlyPrefix ? ReadOnly : None;
}

QString KPTagName::displayName() const
{
    return m_displayName.load(std::memory_order_acquire).toString();
}

// A new display name has the same lower case, so it does not matter which of two threads comes
// first and what is stored stays right.
KPPooledString KPTagName::pooledDisplayNameLC() const
{
    KPPooledString lower = m_displayNameLC.load(std::memory_order_acquire);
    if (lower.isEmpty()) {
        lower = KPPool::pooledString(lowerCase(displayName()));
        m_displayNameLC.store(lower, std::memory_order_release);
    }
    return lower;
}

void KPTagName::setDisplayName(const QString &name)
{
    if (lowerCase(name) == pooledDisplayNameLC().view())
        m_displayName.store(KPPool::pooledString(name), std::memory_order_release);
}

QString KPTagName::keyNameActivePart() const
{
    const QStringView key = m_keyName.view();
    const QStringView active = key.sliced(KPTagNameKey::prefixOf(key).size());
    return QString::fromRawData(active.data(), active.size());
}

QString KPTagName::tagStringForSorting() const
{
    const QString name = displayName();
    return name.startsWith(u'.') ? QStringLiteral("zzzz") + name : name;
}

// Takes the number at the start of the text off it, without its leading zeros.
static QStringView takeNumber(QStringView &text)
{
    const auto *end =
        std::find_if_not(text.begin(), text.end(), [](QChar unit) { return unit.isDigit(); });
    QStringView number = text.first(end - text.begin());
    text = text.sliced(number.size());
    while (!number.isEmpty() && number.front().digitValue() == 0)
        number = number.sliced(1);
    return number;
}

static int compareNumbers(QStringView a, QStringView b)
{
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    for (qsizetype i = 0; i < a.size(); ++i) {
        if (const int difference = a[i].digitValue() - b[i].digitValue(); difference != 0)
            return difference;
    }
    return 0;
}

// Compared piece by piece, a run of digits being one piece. Beside other characters every number
// stands where "0" does, whatever its value and script, which keeps the order transitive.
static int compareNaturally(QStringView a, QStringView b)
{
    while (!a.isEmpty() && !b.isEmpty()) {
        const bool numberA = a.front().isDigit();
        const bool numberB = b.front().isDigit();
        int order = 0;
        if (numberA && numberB) {
            const QStringView first = takeNumber(a);
            order = compareNumbers(first, takeNumber(b));
        } else {
            const QChar zero = u'0';
            order = (numberA ? zero : a.front()).unicode() - (numberB ? zero : b.front()).unicode();
            a = a.sliced(1);
            b = b.sliced(1);
        }
        if (order != 0)
            return order;
    }
    return (a.isEmpty() ? 0 : 1) - (b.isEmpty() ? 0 : 1);
}

int KPTagName::compareNumerically(const KPTagName *other) const
{
    return compareNaturally(pooledDisplayNameLC().view(), other->pooledDisplayNameLC().view());
}

bool KPTagName::passesSearch(const QString &filterText) const
{
    const QString filter = foldText(filterText).simplified();
    if (filter.isEmpty())
        return true;
    const QString name = foldText(displayName());
    for (const QStringView word : qTokenize(filter, u' ')) {
        if (!name.contains(word))
            return false;
    }
    return true;
}

bool KPTagName::isPopularType() const
{
    using KPContentTypes::Number;
    // Types that stand for whole families, or whose family has no type of its own.
    static const auto popular = std::to_array<Number>({
        KPContentTypes::numberOf(u"com.microsoft.word.doc"),
        KPContentTypes::numberOf(u"org.openxmlformats.wordprocessingml.document"),
        KPContentTypes::numberOf(u"org.oasis-open.opendocument.text"),
        KPContentTypes::numberOf(u"com.microsoft.excel.xls"),
        KPContentTypes::numberOf(u"org.openxmlformats.spreadsheetml.sheet"),
        KPContentTypes::numberOf(u"org.oasis-open.opendocument.spreadsheet"),
        KPContentTypes::numberOf(u"public.presentation"),
        KPContentTypes::numberOf(u"public.spreadsheet"),
        KPContentTypes::numberOf(u"org.oasis-open.opendocument.presentation"),
        KPContentTypes::numberOf(u"com.apple.iwork.pages.pages"),
        KPContentTypes::numberOf(u"com.apple.iwork.pages.sffpages"),
        KPContentTypes::numberOf(u"com.apple.iwork.pages.pages-tef"),
        KPContentTypes::numberOf(u"com.apple.iwork.numbers.numbers"),
        KPContentTypes::numberOf(u"com.apple.iwork.numbers.sffnumbers"),
        KPContentTypes::numberOf(u"com.apple.iwork.numbers.numbers-tef"),
    });
    if (m_type != FileType)
        return false;
    const Number type = KPContentTypes::numberOf(uti());
    return std::any_of(popular.begin(), popular.end(),
                       [type](Number known) { return KPContentTypes::conforms(type, known); });
}

bool KPTagName::tagInArray(const Tags &tags) const
{
    return tagIndexInArray(tags) >= 0;
}

qsizetype KPTagName::tagIndexInArray(const Tags &tags) const
{
    return tags.indexOf(this);
}

KPTagName::Tags KPTagName::removeDuplicates(const Tags &tags)
{
    Tags result;
    result.reserve(tags.size());
    QSet<KPTagName *> seen{nullptr};
    for (KPTagName *tag : tags) {
        if (!seen.contains(tag)) {
            seen.insert(tag);
            result.append(tag);
        }
    }
    return result;
}

KPTagName::Tags KPTagName::removeTags(const Tags &tags, const Tags &removeThese)
{
    QSet<KPTagName *> removed(removeThese.begin(), removeThese.end());
    removed.insert(nullptr);
    Tags result;
    std::copy_if(tags.begin(), tags.end(), std::back_inserter(result),
                 [&](KPTagName *tag) { return !removed.contains(tag); });
    return result;
}

QStringList KPTagName::displayStringsForTagNames(const Tags &tags)
{
    QStringList result;
    result.reserve(tags.size());
    for (const KPTagName *tag : tags) {
        if (tag != nullptr)
            result.append(tag->displayName());
    }
    return result;
}

bool KPTagName::arrayIsAllKPTagNames(const Tags &tags)
{
    if (!tags.contains(nullptr))
        return true;
    qCWarning(xpLog, "Someone handed non KPTagNames to someone who expected them!!!");
    return false;
}

bool KPTagName::areAllTags(const Tags &tags, const Tags &containedIn)
{
    return std::all_of(tags.begin(), tags.end(),
                       [&](KPTagName *tag) { return tag == nullptr || containedIn.contains(tag); });
}

bool KPTagName::pooledLCTag(KPPooledString tag, const PooledTags &inArray)
{
    return inArray.contains(tag);
}

bool KPTagName::areAllLC_PooledTags(const PooledTags &tags, const PooledTags &inArrayOne,
                                    const PooledTags &orTwo, const PooledTags &orThree,
                                    const PooledTags &orFour)
{
    return std::all_of(tags.begin(), tags.end(), [&](KPPooledString tag) {
        return inArrayOne.contains(tag) || orTwo.contains(tag) || orThree.contains(tag) ||
               orFour.contains(tag);
    });
}

bool KPTagName::areAnyLC_PooledTags(const PooledTags &tags, const PooledTags &inArrayOne,
                                    const PooledTags &orTwo, const PooledTags &orThree,
                                    const PooledTags &orFour)
{
    return std::any_of(tags.begin(), tags.end(), [&](KPPooledString tag) {
        return inArrayOne.contains(tag) || orTwo.contains(tag) || orThree.contains(tag) ||
               orFour.contains(tag);
    });
}
