#pragma once

#include "PropertyValue.h"

#include <QMap>
#include <QStringList>
#include <optional>

// What a file says of itself that is kept twice while the user wants it: in the convention's
// attributes and in the desktop's own ("user.xdg.tags": tags between commas; "user.baloo.rating":
// half stars from 0 to 10 in digits; "user.xdg.comment": text; all UTF-8). Reading, comparing and
// merging of the two; no file is touched. Threads: any; values.
struct KarvexFacts
{
    // By name, without "user." and, of ours, "com.apple.metadata:". Ours decoded, the desktop's as
    // the bytes that stand there; as the index keeps them.
    using Attributes = QMap<QString, PropertyValue>;

    static const QString commentKey; // "kMDItemFinderComment": ours
    static const QString desktopTagsKey;
    static const QString desktopRatingKey;
    static const QString desktopCommentKey;

    QStringList tags;
    int halfStars = 0; // 0: unrated
    QString comment;
    bool hasTags = false; // the attribute is there, if only with an empty list
    // What stands there and cannot be understood is left alone.
    bool areTagsReadable = true;
    bool isRatingReadable = true;
    bool isCommentReadable = true;

    static KarvexFacts ours(const Attributes &attributes);
    static KarvexFacts desktops(const Attributes &attributes);

    // The desktop's form; nothing: no attribute.
    static std::optional<QByteArray> desktopTags(const QStringList &tags);
    static std::optional<QByteArray> desktopRating(int halfStars);
    static std::optional<QByteArray> desktopComment(const QString &comment);
    // A comma ends a tag there, so that one with a comma cannot be kept.
    static bool fitsDesktop(const QString &tag) { return !tag.contains(u','); }

    // Both sides of one file.
    struct Pair;
    static bool agree(const Pair &pair);
    // What cannot be understood counts as the same: nothing can be made of it.
    static bool areSameTags(const KarvexFacts &one, const KarvexFacts &other);
    static bool areSameRatings(const KarvexFacts &one, const KarvexFacts &other);
    static bool areSameComments(const KarvexFacts &one, const KarvexFacts &other);
    // The desktop's tags after ours were changed from `before` to `after`: what another program did
    // to them meanwhile stays.
    static QStringList followed(const QStringList &desktop, const QStringList &before,
                                const QStringList &after);
    // What both should say. What only one side changed since `base` is taken; a tag that they
    // disagree on otherwise is kept, and of two ratings or comments the later one.
    static KarvexFacts merged(const Pair &base, const Pair &now, bool isOursNewer);
};

struct KarvexFacts::Pair
{
    KarvexFacts ours;
    KarvexFacts desktop;

    static Pair of(const Attributes &attributes)
    {
        return {KarvexFacts::ours(attributes), KarvexFacts::desktops(attributes)};
    }
};
