#include "KarvexMirror.h"

#include "Karvex.h"
#include "KarvexAuthenticated.h"
#include "KarvexErrors.h"
#include "KarvexFileLock.h"
#include "KarvexTimeStamp.h"
#include "UserDefaults.h"
#include "XPExtendedAttributes.h"
#include "XPFileInfo.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPPropertyList.h"

const QString KarvexMirror::settingsKey = QStringLiteral("KPMirrorDesktopTags");

using Attributes = KarvexFacts::Attributes;
using Bytes = std::optional<QByteArray>;

// Later than this after our own write of it, something else on the file was changed.
static constexpr double ownWriteSeconds = 2;

bool KarvexMirror::isOn()
{
    return UserDefaults::standard().boolValue(settingsKey);
}

bool KarvexMirror::wasAsked()
{
    return UserDefaults::standard().isSaved(settingsKey);
}

// Of our key; empty: there is none.
static QString desktopKeyOf(const QString &key)
{
    if (key == Karvex::userTagsKey)
        return KarvexFacts::desktopTagsKey;
    if (key == Karvex::starRatingKey)
        return KarvexFacts::desktopRatingKey;
    return key == KarvexFacts::commentKey ? KarvexFacts::desktopCommentKey : QString();
}

// --- Following a write of ours

static std::optional<XPError> writeBytes(const Bytes &bytes, const QString &name,
                                         const QString &path)
{
    auto error = bytes ? XPExtendedAttributes::write(path, name, *bytes)
                       : XPExtendedAttributes::remove(path, name);
    if (error && KarvexAuthenticated::mayRetry(*error))
        error = KarvexAuthenticated::writeBytes(bytes, name, path);
    return error;
}

static void putDecoded(const Bytes &bytes, const QString &key, Attributes &attributes)
{
    if (!bytes)
        return;
    const auto value = XPPropertyList::read(*bytes);
    attributes.insert(key, value ? *value : PropertyValue(*bytes));
}

static void warn(const QString &path, const QString &what)
{
    qCWarning(xpLog).noquote() << XPPath::printable(path) + u':' << what;
}

static void warnOfUnfit(const QString &path, const QStringList &tags)
{
    for (const QString &tag : tags) {
        if (!KarvexFacts::fitsDesktop(tag))
            warn(path, QStringLiteral("the desktop cannot hold the tag with a comma ") +
                           XPPath::printable(tag));
    }
}

// What the desktop should say after our attribute `key` changed. Not called where its bytes cannot
// be understood.
static Bytes followed(const QString &key, const Attributes &before, const Attributes &after)
{
    const KarvexFacts desktop = KarvexFacts::desktops(before);
    const KarvexFacts ours = KarvexFacts::ours(after);
    if (key == Karvex::starRatingKey)
        return KarvexFacts::desktopRating(ours.halfStars);
    if (key == KarvexFacts::commentKey)
        return KarvexFacts::desktopComment(ours.comment);
    return KarvexFacts::desktopTags(
        desktop.hasTags
            ? KarvexFacts::followed(desktop.tags, KarvexFacts::ours(before).tags, ours.tags)
            : ours.tags);
}

// The desktop's attribute says what we made it say last, as it mostly does: it need not be taken
// apart.
static bool isOurOldTags(const QByteArray &desktop, const Bytes &oldOurs)
{
    const auto old = oldOurs ? XPPropertyList::read(*oldOurs) : PropertyValue();
    return old && desktop == KarvexFacts::desktopTags(old->strings());
}

static std::optional<XPError> follow(const QString &key, const Bytes &oldOurs,
                                     const PropertyValue &newOurs, const QString &path)
{
    const bool isTags = key == Karvex::userTagsKey;
    const QString desktopKey = desktopKeyOf(key);
    const auto present = XPExtendedAttributes::read(path, desktopKey);
    Bytes wanted;
    if (isTags && present && *present && isOurOldTags(**present, oldOurs)) {
        wanted = KarvexFacts::desktopTags(newOurs.strings());
    } else {
        Attributes before;
        Attributes after;
        putDecoded(oldOurs, key, before);
        if (!newOurs.isNull())
            after.insert(key, newOurs);
        if (present && *present)
            before.insert(desktopKey, **present);
        const KarvexFacts desktop = KarvexFacts::desktops(before);
        if (!present || !desktop.areTagsReadable || !desktop.isRatingReadable ||
            !desktop.isCommentReadable) {
            warn(path, QStringLiteral("%1 cannot be understood and stays").arg(desktopKey));
            return {};
        }
        wanted = followed(key, before, after);
    }
    if (isTags)
        warnOfUnfit(path, newOurs.strings());
    return wanted == *present ? std::nullopt : writeBytes(wanted, desktopKey, path);
}

std::optional<XPError> KarvexMirror::writeWith(const PropertyValue &value, const QString &key,
                                               const QString &path, const Write &write)
{
    if (desktopKeyOf(key).isEmpty() || !isOn())
        return write();
    const QString name = Karvex::spotlightKey(key);
    const auto old = XPExtendedAttributes::read(path, name);
    if (auto error = write())
        return error;
    auto error = follow(key, old.valueOr({}), value, path);
    if (error && old)
        KarvexTimeStamp::putBack(*old, name, path);
    return error;
}

// --- Both ways

XPResult<Attributes> KarvexMirror::read(const QString &path)
{
    Attributes attributes;
    for (const QString &key :
         {Karvex::userTagsKey, Karvex::starRatingKey, KarvexFacts::commentKey}) {
        const auto ours = XPExtendedAttributes::read(path, Karvex::spotlightKey(key));
        if (!ours)
            return ours.error();
        putDecoded(*ours, key, attributes);
        const QString desktopKey = desktopKeyOf(key);
        const auto desktop = XPExtendedAttributes::read(path, desktopKey);
        if (!desktop)
            return desktop.error();
        if (*desktop)
            attributes.insert(desktopKey, **desktop);
    }
    return attributes;
}

namespace {

// Attributes of one file that are written all or not at all.
class Writes
{
public:
    explicit Writes(const QString &path) : m_path(path) {}

    void add(const QString &name, const Bytes &bytes) { m_wanted.append({name, bytes}); }
    void addOurs(const QString &key, const PropertyValue &value);
    qsizetype count() const { return m_wanted.size(); }
    std::optional<XPError> perform();

private:
    QString m_path;
    QList<std::pair<QString, Bytes>> m_wanted;
    std::optional<XPError> m_error;
};

} // namespace

void Writes::addOurs(const QString &key, const PropertyValue &value)
{
    if (value.isNull()) {
        add(Karvex::spotlightKey(key), {});
        return;
    }
    const auto bytes = XPPropertyList::writeBinary(value);
    if (!bytes)
        m_error = KarvexErrors::propertyList(bytes.error(), m_path);
    else if (bytes->size() > Karvex::maximumValueSize)
        m_error = KarvexErrors::tooBig(m_path);
    else
        add(Karvex::spotlightKey(key), *bytes);
}

std::optional<XPError> Writes::perform()
{
    QList<std::pair<QString, Bytes>> old;
    for (const auto &[name, bytes] : m_wanted) {
        if (m_error)
            break;
        const auto before = XPExtendedAttributes::read(m_path, name);
        if (!before) {
            m_error = before.error();
            break;
        }
        m_error = bytes ? XPExtendedAttributes::write(m_path, name, *bytes)
                        : XPExtendedAttributes::remove(m_path, name);
        if (!m_error)
            old.prepend({name, *before});
    }
    if (m_error) {
        for (const auto &[name, bytes] : old)
            KarvexTimeStamp::putBack(bytes, name, m_path);
    }
    return m_error;
}

// Our rating time is as old as the file's last change: nothing was changed after it.
static bool isOursNewer(const QString &path)
{
    const auto file = XPFileInfo::read(path);
    const auto time = Karvex::getXAttrMetaData(Karvex::ratingTimeKey, path);
    return file && time && !time->isNull() &&
           static_cast<double>(file->changed) / 1e9 - time->date().secondsSince1970() <=
               ownWriteSeconds;
}

static void addOurs(Writes &writes, const KarvexFacts &is, const KarvexFacts &shall)
{
    const PropertyValue now = PropertyValue::Date::now();
    if (is.tags != shall.tags) {
        writes.addOurs(Karvex::userTagTimeKey, now);
        writes.addOurs(Karvex::userTagsKey, Karvex::removeDuplicateTags(shall.tags));
    }
    if (is.halfStars != shall.halfStars) {
        if (shall.halfStars > 0)
            writes.addOurs(Karvex::ratingTimeKey, now);
        writes.addOurs(Karvex::starRatingKey, shall.halfStars > 0
                                                  ? PropertyValue::real(shall.halfStars / 2.0)
                                                  : PropertyValue());
    }
    if (is.comment != shall.comment)
        writes.addOurs(KarvexFacts::commentKey,
                       shall.comment.isEmpty() ? PropertyValue() : PropertyValue(shall.comment));
}

static void addDesktops(Writes &writes, const KarvexFacts &is, const KarvexFacts &shall)
{
    if (!KarvexFacts::areSameTags(is, shall))
        writes.add(KarvexFacts::desktopTagsKey, KarvexFacts::desktopTags(shall.tags));
    if (!KarvexFacts::areSameRatings(is, shall))
        writes.add(KarvexFacts::desktopRatingKey, KarvexFacts::desktopRating(shall.halfStars));
    if (!KarvexFacts::areSameComments(is, shall))
        writes.add(KarvexFacts::desktopCommentKey, KarvexFacts::desktopComment(shall.comment));
}

XPResult<KarvexMirror::Outcome>
KarvexMirror::reconcile(const QString &path, const KarvexFacts::Pair &base, bool isDryRun)
{
    const KarvexFileLock lock(path);
    const auto attributes = read(path);
    if (!attributes)
        return attributes.error();
    const KarvexFacts::Pair now = KarvexFacts::Pair::of(*attributes);
    Outcome outcome;
    outcome.before = now.ours;
    outcome.after = KarvexFacts::merged(base, now, isOursNewer(path));
    outcome.isReadable = now.ours.areTagsReadable && now.ours.isRatingReadable &&
                         now.ours.isCommentReadable && now.desktop.areTagsReadable &&
                         now.desktop.isRatingReadable && now.desktop.isCommentReadable;
    for (const QString &tag : outcome.after.tags) {
        if (!KarvexFacts::fitsDesktop(tag))
            outcome.unfit.append(tag);
    }
    Writes writes(path);
    addOurs(writes, now.ours, outcome.after);
    const qsizetype ours = writes.count();
    addDesktops(writes, now.desktop, outcome.after);
    outcome.changedOurs = ours > 0;
    outcome.changedDesktop = writes.count() > ours;
    const auto error = isDryRun ? std::nullopt : writes.perform();
    return error ? XPResult<Outcome>(*error) : XPResult<Outcome>(outcome);
}
