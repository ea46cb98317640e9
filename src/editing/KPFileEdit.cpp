#include "KPFileEdit.h"

#include "KPDocEdits.h"
#include "Karvex.h"
#include "KarvexTagKey.h"

#include <QCoreApplication>
#include <QSet>

KPFileChange KPFileChange::reversed() const
{
    KPFileChange result = *this;
    if (result.tags)
        std::swap(result.tags->before, result.tags->after);
    if (result.rating)
        std::swap(result.rating->before, result.rating->after);
    return result;
}

using Failure = std::optional<XPError>;

// What the edit makes of a file's tags; nothing: it leaves them alone.
static std::optional<QStringList> edited(const KPFileEdit &edit, const QStringList &tags)
{
    if (edit.rename) {
        QStringList renamed = Karvex::removeDuplicateTags(edit.rename->applied(tags));
        return renamed == tags ? std::nullopt : std::optional(std::move(renamed));
    }
    if (tags == edit.tags->after || (edit.tags->before.isEmpty() && edit.tags->after.isEmpty()))
        return {};
    QSet<QString> common;
    for (const QString &tag : edit.tags->before)
        common.insert(karvexTagKey(tag));
    QStringList result;
    for (const QString &tag : tags) {
        if (!common.contains(karvexTagKey(tag)))
            result.append(tag);
    }
    result = Karvex::removeDuplicateTags(result + edit.tags->after);
    return result == tags ? std::nullopt : std::optional(std::move(result));
}

static Failure changeTags(const KPFileEdit &edit, KPFileChange *done,
                          const KPFileEditing::Intend &intend)
{
    std::optional<KPFileChange::Tags> change;
    auto error = KPDocEdits::changeUserTags(
        [&](const QStringList &now) -> std::optional<QStringList> {
            change.reset();
            auto after = edited(edit, now);
            if (!after)
                return {};
            change = {now, *after};
            if (intend)
                intend({done->path, change, {}});
            return after;
        },
        done->path);
    if (!error)
        done->tags = change;
    return error;
}

static Failure changeRating(double rating, KPFileChange *done, const KPFileEditing::Intend &intend)
{
    const QString &path = done->path;
    const auto before = Karvex::getRating(path);
    if (!before)
        return before.error();
    if (*before == rating)
        return {};
    const KPFileChange::Rating change{*before, rating};
    if (intend)
        intend({path, {}, change});
    if (auto error = KPDocEdits::setRating(rating, path))
        return error;
    done->rating = change;
    return {};
}

static KPFileOutcome named(KPFileOutcome outcome)
{
    if (outcome.error)
        outcome.error->path = outcome.change.path;
    return outcome;
}

KPFileOutcome KPFileEditing::apply(const KPFileEdit &edit, const QString &path,
                                   const Intend &intend)
{
    KPFileOutcome outcome{{path, {}, {}}, {}};
    if (edit.rating)
        outcome.error = changeRating(*edit.rating, &outcome.change, intend);
    if (edit.changesTags() && !outcome.error)
        outcome.error = changeTags(edit, &outcome.change, intend);
    return named(outcome);
}

static XPError changedMeanwhile(const QString &path)
{
    return XPError::make(XPError::Kind::InvalidArgument, qtTrId("KPChangedMeanwhile"), path);
}

// Looks and writes under the file's lock: what another program of ours adds survives.
static Failure repeatTags(const KPFileChange::Tags &tags, KPFileChange *done)
{
    bool isOurs = true;
    bool writes = false;
    auto error = KPDocEdits::changeUserTags(
        [&](const QStringList &now) -> std::optional<QStringList> {
            isOurs = now == tags.before || now == tags.after;
            writes = now == tags.before && now != tags.after;
            return writes ? std::optional(tags.after) : std::nullopt;
        },
        done->path);
    if (error)
        return error;
    if (!isOurs)
        return changedMeanwhile(done->path);
    if (writes)
        done->tags = tags;
    return {};
}

static Failure repeatRating(const KPFileChange::Rating &rating, KPFileChange *done)
{
    const auto now = Karvex::getRating(done->path);
    if (!now)
        return now.error();
    if (*now == rating.after)
        return {};
    if (*now != rating.before)
        return changedMeanwhile(done->path);
    if (auto error = KPDocEdits::setRating(rating.after, done->path))
        return error;
    done->rating = rating;
    return {};
}

KPFileOutcome KPFileEditing::repeat(const KPFileChange &change)
{
    KPFileOutcome outcome{{change.path, {}, {}}, {}};
    if (change.rating)
        outcome.error = repeatRating(*change.rating, &outcome.change);
    if (change.tags && !outcome.error)
        outcome.error = repeatTags(*change.tags, &outcome.change);
    return named(outcome);
}
