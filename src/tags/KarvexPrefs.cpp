#include "KarvexPrefs.h"

#include "KarvexFileLock.h"
#include "KarvexTagKey.h"
#include "UserDefaults.h"
#include "XPFileInfo.h"
#include "XPMutex.h"

#include <QSet>
#include <chrono>

using Clock = std::chrono::steady_clock;

const QString KarvexPrefs::sharedDomain = QStringLiteral("com.karvex.shared");
const QString KarvexPrefs::recentTagsKey = QStringLiteral("recentlyEnteredTags");

namespace {

struct State
{
    XPMutex mutex;
    QString domain XP_GUARDED_BY(mutex) = KarvexPrefs::sharedDomain;
    std::optional<Clock::time_point> lastSynch XP_GUARDED_BY(mutex);
};

} // namespace

static State &state()
{
    static State state;
    return state;
}

static QString domain()
{
    const XPLocker locker(state().mutex);
    return state().domain;
}

static UserDefaults &defaults()
{
    return UserDefaults::forDomain(domain());
}

void KarvexPrefs::setPrefsFile(const QString &domain)
{
    const XPLocker locker(state().mutex);
    state().domain = domain;
    state().lastSynch.reset();
}

void KarvexPrefs::chooseDomain()
{
    const bool shared = XPFileInfo::read(UserDefaults::pathForDomain(sharedDomain)).hasValue();
    setPrefsFile(shared ? sharedDomain : UserDefaults::programDomain);
}

std::optional<XPError> KarvexPrefs::synchPrefs()
{
    return defaults().synchronise();
}

std::optional<XPError> KarvexPrefs::synchPrefsIfItsBeenAWhile()
{
    {
        const XPLocker locker(state().mutex);
        const auto now = Clock::now();
        if (state().lastSynch && now - *state().lastSynch < std::chrono::seconds(10))
            return {};
        state().lastSynch = now;
    }
    return synchPrefs();
}

static QStringList storedTags()
{
    return defaults().value(KarvexPrefs::recentTagsKey).strings();
}

QStringList KarvexPrefs::recentTags()
{
    // An unreadable file leaves what this process knows.
    (void)synchPrefsIfItsBeenAWhile();
    return storedTags();
}

// The list as on disk, changed by `change` and written back, without a chance for another
// process of ours in between.
template <typename Change>
static std::optional<XPError> changeRecents(Change change)
{
    const KarvexFileLock lock = KarvexFileLock::named(UserDefaults::pathForDomain(domain()));
    if (auto error = KarvexPrefs::synchPrefs())
        return error;
    defaults().setValue(KarvexPrefs::recentTagsKey, QStringList(change(storedTags())));
    return KarvexPrefs::synchPrefs();
}

std::optional<XPError> KarvexPrefs::updatePrefsRecentTags(const QStringList &oldTags,
                                                          const QStringList &newTags)
{
    QStringList added;
    for (const QString &tag : newTags) {
        if (!oldTags.contains(tag))
            added.append(tag);
    }
    if (added.isEmpty())
        return {};
    return changeRecents([&](const QStringList &stored) {
        QStringList result;
        QSet<QString> seen;
        for (const QString &tag : added + stored) {
            if (result.size() == maximumRecentTags)
                break;
            const QString key = karvexTagKey(tag);
            if (!seen.contains(key))
                result.append(tag);
            seen.insert(key);
        }
        return result;
    });
}

std::optional<XPError> KarvexPrefs::removeTagsFromRecents(const QStringList &tags)
{
    QSet<QString> keys;
    for (const QString &tag : tags)
        keys.insert(karvexTagKey(tag));
    return changeRecents([&](const QStringList &stored) {
        QStringList result;
        for (const QString &tag : stored) {
            if (!keys.contains(karvexTagKey(tag)))
                result.append(tag);
        }
        return result;
    });
}
