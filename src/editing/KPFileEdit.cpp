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
    if (result.comment)
        std::swap(result.comment->before, result.comment->after);
    for (KarvexRepair::Bytes &bytes : result.repaired)
        std::swap(bytes.before, bytes.after);
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

static Failure changeComment(const QString &comment, KPFileChange *done,
                             const KPFileEditing::Intend &intend)
{
    const auto before = KPDocEdits::comment(done->path);
    if (!before)
        return before.error();
    if (*before == comment)
        return {};
    const KPFileChange::Comment change{*before, comment};
    if (intend)
        intend({done->path, {}, {}, change});
    if (auto error = KPDocEdits::setComment(comment, done->path))
        return error;
    done->comment = change;
    return {};
}

static Failure repair(KPFileChange *done, const KPFileEditing::Intend &intend)
{
    const auto unreadable = KarvexRepair::unreadable(done->path);
    if (!unreadable)
        return unreadable.error();
    if (intend && !unreadable->isEmpty())
        intend({done->path, {}, {}, {}, *unreadable});
    for (const KarvexRepair::Bytes &bytes : *unreadable) {
        const auto exchanged = KPDocEdits::exchange(bytes, done->path);
        if (!exchanged)
            return exchanged.error();
        if (*exchanged)
            done->repaired.append(bytes);
    }
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
    if (edit.repairs)
        outcome.error = repair(&outcome.change, intend);
    if (edit.rating && !outcome.error)
        outcome.error = changeRating(*edit.rating, &outcome.change, intend);
    if (edit.changesTags() && !outcome.error)
        outcome.error = changeTags(edit, &outcome.change, intend);
    if (edit.comment && !outcome.error)
        outcome.error = changeComment(*edit.comment, &outcome.change, intend);
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

static Failure repeatComment(const KPFileChange::Comment &comment, KPFileChange *done)
{
    const auto now = KPDocEdits::comment(done->path);
    if (!now)
        return now.error();
    if (*now == comment.after)
        return {};
    if (*now != comment.before)
        return changedMeanwhile(done->path);
    if (auto error = KPDocEdits::setComment(comment.after, done->path))
        return error;
    done->comment = comment;
    return {};
}

static Failure repeatRepair(const QList<KarvexRepair::Bytes> &repaired, KPFileChange *done)
{
    Failure failure;
    for (const KarvexRepair::Bytes &bytes : repaired) {
        const auto exchanged = KPDocEdits::exchange(bytes, done->path);
        if (!exchanged)
            return exchanged.error();
        if (*exchanged)
            done->repaired.append(bytes);
        else
            failure = changedMeanwhile(done->path);
    }
    return failure;
}

KPFileOutcome KPFileEditing::repeat(const KPFileChange &change)
{
    KPFileOutcome outcome{{change.path, {}, {}}, {}};
    if (change.rating)
        outcome.error = repeatRating(*change.rating, &outcome.change);
    if (change.tags && !outcome.error)
        outcome.error = repeatTags(*change.tags, &outcome.change);
    if (change.comment && !outcome.error)
        outcome.error = repeatComment(*change.comment, &outcome.change);
    if (!outcome.error)
        outcome.error = repeatRepair(change.repaired, &outcome.change);
    return named(outcome);
}
