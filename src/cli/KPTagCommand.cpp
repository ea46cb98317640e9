// murnctl tag: changes the tags of files.
#include "KPDoc.h"
#include "KPDocEdits.h"
#include "KPDocMetaData.h"
#include "KPFileSteps.h"
#include "KPIndexSession.h"
#include "KPTagName.h"
#include "KPTagSuggestions.h"
#include "Karvex.h"
#include "KarvexPrefs.h"
#include "KarvexTagKey.h"
#include "XPExtendedAttributes.h"
#include "XPFileInfo.h"
#include "XPMutex.h"

#include <algorithm>

namespace {

struct Change
{
    QStringList add;
    QStringList remove;             // as given: see toRemove()
    std::optional<QStringList> set; // instead of the two
    bool overwritesUnreadable = false;
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
    Change change{Karvex::removeDuplicateTags(*add), line.values("--remove"), {}};
    change.overwritesUnreadable = line.has("--force");
    if (line.has("--set") || line.has("--clear"))
        change.set = Karvex::removeDuplicateTags(*set);
    else if (add->isEmpty() && remove->isEmpty())
        return kpUsageError(QStringLiteral("nothing to change: give --add, --remove, --set or "
                                           "--clear"));
    if (change.overwritesUnreadable && !change.set)
        return kpUsageError(QStringLiteral("--force goes with --set or --clear only"));
    return change;
}

// A tag with a comma in it, as another program may have set it, is removed whole; else the pieces.
static QStringList toRemove(const QStringList &values, const QStringList &present)
{
    QStringList tags;
    for (const QString &value : values) {
        const QString whole = KPTagName::CleanAndTrimTag(value);
        const bool isThere = std::any_of(present.begin(), present.end(), [&](const QString &tag) {
            return karvexTagKey(tag) == karvexTagKey(whole);
        });
        tags += isThere ? QStringList{whole} : KPCommandLine::tagsIn(value);
    }
    return tags;
}

static std::optional<XPError> apply(const Change &change, const QStringList &present,
                                    const QString &path)
{
    if (change.set)
        return *change.set == present ? std::nullopt : KPDocEdits::setUserTags(*change.set, path);
    const QStringList remove = toRemove(change.remove, present);
    if (remove.isEmpty())
        return KPDocEdits::addUserTags(change.add, path);
    if (change.add.isEmpty())
        return KPDocEdits::clearUserTags(remove, path);
    return KPDocEdits::setCommonUserTags(path, remove, change.add);
}

// What is about to be lost is printed first, in the form that setfattr(1) takes.
static bool isPrinted(const QString &path, KPCommandOutput &output)
{
    const QString name = Karvex::spotlightKey(Karvex::userTagsKey);
    const auto bytes = Karvex::getBytes(name, path);
    if (!bytes) {
        output.fail(path, "tags cannot be read", bytes.error());
        return false;
    }
    output.write(output.name(path) + '\t' + XPExtendedAttributes::nameOnDisk(name) + "=0x" +
                 bytes->value_or(QByteArray()).toHex() + '\n');
    return output.flush();
}

// The file can be read, what stands there is no list of tags.
static bool isValue(const XPError &error)
{
    return error.kind == XPError::Kind::Malformed || error.kind == XPError::Kind::TooLarge;
}

static int suggest(const KPCommandLine &line, KPCommandOutput &output)
{
    xpGuiThread.assertHere();
    for (const char *option : {"--add", "--remove", "--set", "--clear", "--force"}) {
        if (line.has(option))
            return kpReportUsage(&kpTagCommand, QStringLiteral("--suggest stands alone"));
    }
    if (line.operands().size() != 1)
        return kpReportUsage(&kpTagCommand, QStringLiteral("--suggest takes one file"));
    const QString path = KPFileSteps::operand(line.operands().first());
    if (const auto info = XPFileInfo::read(path); !info) {
        output.fail(line.operands().first(), info.error().reason());
        return output.exitStatus();
    }
    KPIndexSession session(output);
    if (!session.catchUp(false))
        return KPExitInterrupted;
    KPDocMetaData::useIndex(session.index().source());
    const QStringList tags = KPTagSuggestions::forFile(path, KPTagSuggestions::popularTags());
    KPDoc::stopMetaDataSearching();
    for (const QString &tag : tags)
        output.writeRecord(output.name(tag));
    return output.exitStatus();
}

static int run(const KPCommandLine &line, KPCommandOutput &output)
{
    xpGuiThread.assertHere();
    if (line.has("--suggest"))
        return suggest(line, output);
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
        if (!present && !(change->overwritesUnreadable && isValue(present.error()))) {
            output.fail(path, "tags cannot be read", present.error());
            continue;
        }
        if (!present && !isPrinted(path, output))
            continue;
        const auto error =
            present ? apply(*change, *present, path) : KPDocEdits::setUserTags(*change->set, path);
        if (error) {
            output.fail(path, "tags cannot be changed", *error);
            continue;
        }
        for (const QString &tag : given) {
            if (!present.valueOr({}).contains(tag) && !newTags.contains(tag))
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
    "       murnctl tag --set TAG… [--force] FILE…\n"
    "       murnctl tag --clear [--force] FILE…\n"
    "       murnctl tag --suggest FILE",
    "Changes the tags of files.",
    "Tags are the same whatever the case of their letters. Blanks around a tag are left out, and\n"
    "a comma stands between two tags. A file whose present tags cannot be read is left as it is,\n"
    "unless --force is given: then what was there is printed, as setfattr(1) takes it.\n",
    {{"--add", "TAG", "add a tag after the present ones, unless it is there"},
     {"--remove", "TAG", "remove a tag, before any is added"},
     {"--set", "TAG", "replace all tags by this one, and those of further --set"},
     {"--clear", nullptr, "remove all tags"},
     {"--force", nullptr, "with these two: write over tags that cannot be read"},
     {"--suggest", nullptr, "only show tags that may suit the file, the best first"}},
    run};
