#include "KarvexFacts.h"

#include "Karvex.h"
#include "KarvexTagKey.h"

#include <QSet>
#include <QStringDecoder>
#include <algorithm>
#include <cmath>

const QString KarvexFacts::commentKey = QStringLiteral("kMDItemFinderComment");
const QString KarvexFacts::desktopTagsKey = QStringLiteral("xdg.tags");
const QString KarvexFacts::desktopRatingKey = QStringLiteral("baloo.rating");
const QString KarvexFacts::desktopCommentKey = QStringLiteral("xdg.comment");

static constexpr int mostHalfStars = 10;

KarvexFacts KarvexFacts::ours(const Attributes &attributes)
{
    KarvexFacts facts;
    const PropertyValue tags = attributes.value(Karvex::userTagsKey);
    facts.hasTags = !tags.isNull();
    facts.areTagsReadable = tags.isNull() || tags.isArrayOfStrings();
    facts.tags = tags.strings();
    const PropertyValue rating = attributes.value(Karvex::starRatingKey);
    const double stars = rating.isNull() ? 0 : rating.doubleValue(std::nan(""));
    facts.isRatingReadable = std::isfinite(stars);
    if (facts.isRatingReadable)
        facts.halfStars =
            static_cast<int>(std::lround(std::clamp(stars * 2, 0.0, double{mostHalfStars})));
    const PropertyValue comment = attributes.value(commentKey);
    facts.isCommentReadable = comment.isNull() || comment.isString();
    facts.comment = comment.string();
    return facts;
}

static std::optional<QString> textOf(const PropertyValue &bytes)
{
    // At once: a character that is cut off at the end is an error, not the beginning of more.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes.data());
    return decoder.hasError() ? std::nullopt : std::optional(std::move(text));
}

KarvexFacts KarvexFacts::desktops(const Attributes &attributes)
{
    KarvexFacts facts;
    facts.hasTags = attributes.contains(desktopTagsKey);
    const auto tags = textOf(attributes.value(desktopTagsKey));
    facts.areTagsReadable = tags.has_value();
    for (const QString &tag : tags.value_or(QString()).split(u',')) {
        if (const QString trimmed = tag.trimmed(); !trimmed.isEmpty())
            facts.tags.append(trimmed);
    }
    facts.tags = Karvex::removeDuplicateTags(facts.tags);
    const QByteArray rating = attributes.value(desktopRatingKey).data().trimmed();
    const int halfStars = rating.toInt(&facts.isRatingReadable);
    facts.isRatingReadable = rating.isEmpty() || (facts.isRatingReadable && halfStars >= 0 &&
                                                  halfStars <= mostHalfStars);
    facts.halfStars = facts.isRatingReadable ? halfStars : 0;
    const auto comment = textOf(attributes.value(desktopCommentKey));
    facts.isCommentReadable = comment.has_value();
    facts.comment = comment.value_or(QString());
    return facts;
}

std::optional<QByteArray> KarvexFacts::desktopTags(const QStringList &tags)
{
    QStringList fitting;
    for (const QString &tag : tags) {
        if (fitsDesktop(tag) && !tag.trimmed().isEmpty())
            fitting.append(tag.trimmed().normalized(QString::NormalizationForm_C));
    }
    return fitting.isEmpty() ? std::nullopt : std::optional(fitting.join(u',').toUtf8());
}

std::optional<QByteArray> KarvexFacts::desktopRating(int halfStars)
{
    return halfStars > 0 ? std::optional(QByteArray::number(halfStars)) : std::nullopt;
}

std::optional<QByteArray> KarvexFacts::desktopComment(const QString &comment)
{
    return comment.isEmpty() ? std::nullopt : std::optional(comment.toUtf8());
}

// Of the tags that both sides can hold.
static QSet<QString> keysOf(const QStringList &tags)
{
    QSet<QString> keys;
    for (const QString &tag : tags) {
        if (KarvexFacts::fitsDesktop(tag) && !tag.trimmed().isEmpty())
            keys.insert(karvexTagKey(tag.trimmed()));
    }
    return keys;
}

bool KarvexFacts::areSameTags(const KarvexFacts &one, const KarvexFacts &other)
{
    return !one.areTagsReadable || !other.areTagsReadable || keysOf(one.tags) == keysOf(other.tags);
}

bool KarvexFacts::areSameRatings(const KarvexFacts &one, const KarvexFacts &other)
{
    return !one.isRatingReadable || !other.isRatingReadable || one.halfStars == other.halfStars;
}

bool KarvexFacts::areSameComments(const KarvexFacts &one, const KarvexFacts &other)
{
    return !one.isCommentReadable || !other.isCommentReadable || one.comment == other.comment;
}

bool KarvexFacts::agree(const Pair &pair)
{
    return areSameTags(pair.ours, pair.desktop) && areSameRatings(pair.ours, pair.desktop) &&
           areSameComments(pair.ours, pair.desktop);
}

QStringList KarvexFacts::followed(const QStringList &desktop, const QStringList &before,
                                  const QStringList &after)
{
    const QSet<QString> had = keysOf(before);
    const QSet<QString> has = keysOf(after);
    const QSet<QString> present = keysOf(desktop);
    QStringList result;
    for (const QString &tag : desktop) {
        const QString key = karvexTagKey(tag);
        if (has.contains(key) || !had.contains(key))
            result.append(tag);
    }
    for (const QString &tag : after) {
        const QString key = karvexTagKey(tag.trimmed());
        if (fitsDesktop(tag) && !had.contains(key) && !present.contains(key))
            result.append(tag);
    }
    return keysOf(result) == has ? after : result; // in our order and spelling, where it is ours
}

static QStringList mergedTags(const KarvexFacts::Pair &base, const KarvexFacts::Pair &now)
{
    // An attribute of ours that is gone was lost, not emptied.
    const QSet<QString> oursBefore = now.ours.hasTags ? keysOf(base.ours.tags) : QSet<QString>();
    const QSet<QString> desktopBefore = keysOf(base.desktop.tags);
    const QSet<QString> ours = keysOf(now.ours.tags);
    const QSet<QString> desktop = keysOf(now.desktop.tags);
    const auto isKept = [&](const QString &key) {
        const bool isOurs = ours.contains(key);
        const bool isDesktops = desktop.contains(key);
        const bool oursChanged = isOurs != oursBefore.contains(key);
        const bool desktopChanged = isDesktops != desktopBefore.contains(key);
        if (isOurs == isDesktops || oursChanged == desktopChanged)
            return true;
        return oursChanged ? isOurs : isDesktops;
    };
    QStringList result;
    for (const QString &tag : now.ours.tags) {
        if (!KarvexFacts::fitsDesktop(tag) || isKept(karvexTagKey(tag.trimmed())))
            result.append(tag);
    }
    for (const QString &tag : now.desktop.tags) {
        if (const QString key = karvexTagKey(tag); !ours.contains(key) && isKept(key))
            result.append(tag);
    }
    return result;
}

// Of two values of which there is one: the one that alone changed, that is there, that is newer.
template <typename Value>
static Value mergedValue(const Value &oursBefore, const Value &desktopBefore, const Value &ours,
                         const Value &desktop, bool isOursNewer)
{
    const bool oursChanged = ours != oursBefore;
    const bool desktopChanged = desktop != desktopBefore;
    if (oursChanged != desktopChanged)
        return oursChanged ? ours : desktop;
    if (ours == Value() || desktop == Value())
        return ours == Value() ? desktop : ours;
    return isOursNewer ? ours : desktop;
}

KarvexFacts KarvexFacts::merged(const Pair &base, const Pair &now, bool isOursNewer)
{
    const auto &[ours, desktop] = now;
    KarvexFacts result = ours;
    if (ours.areTagsReadable && desktop.areTagsReadable)
        result.tags = mergedTags(base, now);
    if (ours.isRatingReadable && desktop.isRatingReadable)
        result.halfStars = mergedValue(base.ours.halfStars, base.desktop.halfStars, ours.halfStars,
                                       desktop.halfStars, isOursNewer);
    if (ours.isCommentReadable && desktop.isCommentReadable)
        result.comment = mergedValue(base.ours.comment, base.desktop.comment, ours.comment,
                                     desktop.comment, isOursNewer);
    return result;
}
