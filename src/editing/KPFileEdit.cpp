#include "KPFileEdit.h"

#include "KPDocEdits.h"
#include "Karvex.h"

#include <QCoreApplication>

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

static Failure changeTags(const KPFileEdit::Tags &edit, KPFileChange *change)
{
    const QString &path = change->path;
    const auto before = Karvex::getUserTags(path);
    if (!before)
        return before.error();
    if (auto error = KPDocEdits::setCommonUserTags(path, edit.before, edit.after))
        return error;
    const auto after = Karvex::getUserTags(path);
    if (!after)
        return after.error();
    if (*before != *after)
        change->tags = {*before, *after};
    return {};
}

static Failure changeRating(double rating, KPFileChange *change)
{
    const QString &path = change->path;
    const auto before = Karvex::getRating(path);
    if (!before)
        return before.error();
    if (*before == rating)
        return {};
    if (auto error = KPDocEdits::setRating(rating, path))
        return error;
    change->rating = {*before, rating};
    return {};
}

static KPFileOutcome named(KPFileOutcome outcome)
{
    if (outcome.error)
        outcome.error->path = outcome.change.path;
    return outcome;
}

KPFileOutcome KPFileEditing::apply(const KPFileEdit &edit, const QString &path)
{
    KPFileOutcome outcome{{path, {}, {}}, {}};
    if (edit.rating)
        outcome.error = changeRating(*edit.rating, &outcome.change);
    if (edit.tags && !outcome.error)
        outcome.error = changeTags(*edit.tags, &outcome.change);
    return named(outcome);
}

static XPError changedMeanwhile(const QString &path)
{
    return XPError::make(XPError::Kind::InvalidArgument, qtTrId("KPChangedMeanwhile"), path);
}

// The write takes the old tags away and adds the new ones under the file's lock: a tag that is
// added by another program of ours between the look and the write survives.
static Failure repeatTags(const KPFileChange::Tags &tags, KPFileChange *done)
{
    const auto now = Karvex::getUserTags(done->path);
    if (!now)
        return now.error();
    if (*now == tags.after)
        return {};
    if (*now != tags.before)
        return changedMeanwhile(done->path);
    if (auto error = KPDocEdits::setCommonUserTags(done->path, tags.before, tags.after))
        return error;
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
