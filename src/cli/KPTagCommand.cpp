// murnctl tag: changes the tags of files.
#include "KPCommandOutput.h"
#include "Karvex.h"
#include "KarvexPrefs.h"

namespace {

struct Change
{
    QStringList add;
    QStringList remove;
    std::optional<QStringList> set; // instead of the two
};

} // namespace

static XPResult<Change> changeOf(const KPCommandLine &line)
{
    for (const char *whole : {"--set", "--clear"}) {
        for (const char *part : {"--add", "--remove"}) {
            if (const auto error = line.onlyOneOf({whole, part}))
                return *error;
        }
    }
    if (const auto error = line.onlyOneOf({"--set", "--clear"}))
        return *error;
    const auto add = line.tags("--add");
    const auto remove = line.tags("--remove");
    const auto set = line.tags("--set");
    for (const auto *tags : {&add, &remove, &set}) {
        if (!*tags)
            return tags->error();
    }
    // As they will be stored, so that they compare with what is.
    Change change{Karvex::removeDuplicateTags(*add), *remove, {}};
    if (line.has("--set") || line.has("--clear"))
        change.set = Karvex::removeDuplicateTags(*set);
    else if (add->isEmpty() && remove->isEmpty())
        return kpUsageError(QStringLiteral("nothing to change: give --add, --remove, --set or "
                                           "--clear"));
    return change;
}

static std::optional<XPError> apply(const Change &change, const QStringList &present,
                                    const QString &path)
{
    if (change.set)
        return *change.set == present ? std::nullopt : Karvex::setUserTags(*change.set, path);
    if (change.remove.isEmpty())
        return Karvex::addUserTags(change.add, path);
    if (change.add.isEmpty())
        return Karvex::clearUserTags(change.remove, path);
    return Karvex::setCommonUserTags({path}, change.remove, change.add);
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    const auto change = changeOf(line);
    if (!change)
        return kpReportUsage(&kpTagCommand, change.error().message);
    if (line.operands().isEmpty())
        return kpReportUsage(&kpTagCommand, QStringLiteral("no files given"));
    const QStringList given = change->set.value_or(change->add);
    QStringList newTags; // to some file, for the tags entered last
    for (const QString &path : line.operands()) {
        // Read first whatever the change is: what cannot be read is not written over.
        const auto present = Karvex::getUserTags(path);
        if (!present) {
            output.fail(path, "tags cannot be read", present.error());
            continue;
        }
        if (const auto error = apply(*change, *present, path)) {
            output.fail(path, "tags cannot be changed", *error);
            continue;
        }
        for (const QString &tag : given) {
            if (!present->contains(tag) && !newTags.contains(tag))
                newTags.append(tag);
        }
    }
    if (const auto error = KarvexPrefs::updatePrefsRecentTags({}, newTags))
        output.fail(QStringLiteral("the list of recent tags: ") + error->reason());
    return output.exitStatus();
}

const KPCommand kpTagCommand = {
    "tag",
    "[--add TAG]… [--remove TAG]… FILE…\n"
    "       murnctl tag --set TAG… FILE…\n"
    "       murnctl tag --clear FILE…",
    "Changes the tags of files.",
    "Tags are the same whatever the case of their letters. Blanks around a tag are left out.\n"
    "A file whose present tags cannot be read is left as it is.\n",
    {{"--add", "TAG", "add a tag after the present ones, unless it is there"},
     {"--remove", "TAG", "remove a tag, before any is added"},
     {"--set", "TAG", "replace all tags by this one, and those of further --set"},
     {"--clear", nullptr, "remove all tags"}},
    run};
