#include "UserDefaults.h"

#include "XPAtomicFile.h"
#include "XPFileLock.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPPropertyList.h"
#include "XPWakeUp.h"

#include <QCoreApplication>
#include <QHash>
#include <cstdlib>

using Dictionary = PropertyValue::Dictionary;

const QString UserDefaults::programDomain = QStringLiteral("com.brindle.murn");

// How long a burst of changes is gathered before it is written.
static constexpr std::chrono::milliseconds writeDelay(250);

namespace {

struct Stored
{
    Dictionary values;
    bool isXml = false;
};

} // namespace

// A missing file is an empty one. Kind::Malformed means damaged, every other failure that the
// file could not be read.
static XPResult<Stored> load(const QString &path)
{
    const auto bytes = XPAtomicFile::read(path);
    if (!bytes && bytes.error().kind == XPError::Kind::NotFound)
        return Stored();
    if (!bytes)
        return bytes.error();
    const auto value = XPPropertyList::read(*bytes);
    if (!value)
        return XPError::malformed(value.error().message, value.error().offset);
    if (!value->isDictionary())
        return XPError::malformed(QStringLiteral("the settings are not a dictionary"));
    return Stored{value->dictionary(), !bytes->startsWith("bplist")};
}

static XPResult<Stored> loadOrSetAside(const QString &path)
{
    auto stored = load(path);
    if (stored || stored.error().kind != XPError::Kind::Malformed)
        return stored;
    const auto aside = XPAtomicFile::setAside(path);
    if (!aside)
        return aside.error();
    qCWarning(xpLog).noquote() << "The settings file is damaged and was set aside as"
                               << XPPath::printable(*aside) + u':' << stored.error().message;
    return Stored();
}

// In the format that the file had; a text that XML cannot hold makes it binary.
static std::optional<XPError> save(const QString &path, const Dictionary &values, bool asXml)
{
    if (asXml) {
        if (const auto bytes = XPPropertyList::writeXml(values))
            return XPAtomicFile::write(path, *bytes);
    }
    const auto bytes = XPPropertyList::writeBinary(values);
    return bytes ? XPAtomicFile::write(path, *bytes) : bytes.error();
}

// A null stands for a removed key.
static void apply(const Dictionary &changes, Dictionary &values)
{
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        if (change->isNull())
            values.remove(change.key());
        else
            values.insert(change.key(), *change);
    }
}

// What the file holds once `changes` are in it; it is only written when that differs.
static XPResult<Dictionary> exchangeWithFile(const QString &path, const Dictionary &changes)
{
    if (changes.isEmpty()) {
        const auto stored = load(path);
        if (stored)
            return stored->values;
        if (stored.error().kind != XPError::Kind::Malformed)
            return stored.error();
    }
    const auto lock = XPFileLock::take(path + QStringLiteral(".lock"));
    if (!lock)
        return lock.error();
    const auto stored = loadOrSetAside(path);
    if (!stored)
        return stored.error();
    Dictionary merged = stored->values;
    apply(changes, merged);
    if (merged != stored->values) {
        if (auto error = save(path, merged, stored->isXml))
            return *error;
    }
    return merged;
}

struct UserDefaults::Private
{
    explicit Private(const QString &file) : path(file) {}

    const QString path;
    std::once_flag loaded;
    XPMutex fileMutex; // held over file calls: one exchange with the file at a time

    mutable XPMutex mutex;
    Dictionary registered XP_GUARDED_BY(mutex);
    Dictionary saved XP_GUARDED_BY(mutex);   // the file as last seen, and `changes` over it
    Dictionary changes XP_GUARDED_BY(mutex); // made here and not in the file yet; null: removed
    std::unique_ptr<XPWakeUp> writeSoon XP_GUARDED_BY(mutex);

    PropertyValue answer(const QString &key) const XP_REQUIRES(mutex);
    void scheduleWrite() XP_REQUIRES(mutex);
    bool hasChanges() const XP_EXCLUDES(mutex);
    Dictionary takeChanges() XP_EXCLUDES(mutex);
    void putBack(Dictionary unsaved) XP_EXCLUDES(mutex);
    QStringList adopt(Dictionary fromFile) XP_EXCLUDES(mutex);
    // The keys whose answer changed.
    XPResult<QStringList> synchronise() XP_EXCLUDES(mutex, fileMutex);
    std::optional<XPError> synchroniseAndAnnounce() XP_EXCLUDES(mutex, fileMutex);
    void warn(const XPError &error) const;

    QString notificationName(const QString &key) const;
    void announce(const QStringList &keys) const XP_EXCLUDES(mutex);
};

static bool isNumeric(const PropertyValue &value)
{
    using Kind = PropertyValue::Kind;
    return value.kind() == Kind::Bool || value.kind() == Kind::Integer ||
           value.kind() == Kind::Real;
}

// Whoever asks counts on the kind of the factory value. Other writers mix booleans and numbers.
PropertyValue UserDefaults::Private::answer(const QString &key) const
{
    const auto found = saved.find(key);
    const auto factory = registered.find(key);
    if (found == saved.end())
        return factory != registered.end() ? *factory : PropertyValue();
    const bool fits = factory == registered.end() || factory->kind() == found->kind() ||
                      (isNumeric(*factory) && isNumeric(*found));
    return fits ? *found : *factory;
}

// Without an application nobody would be woken: then the end of the process writes.
void UserDefaults::Private::scheduleWrite()
{
    if (!QCoreApplication::instance())
        return;
    const auto write = [this] {
        if (const auto error = synchroniseAndAnnounce())
            warn(*error);
    };
    if (!writeSoon)
        writeSoon = std::make_unique<XPWakeUp>(write, writeDelay);
    writeSoon->wake();
}

bool UserDefaults::Private::hasChanges() const
{
    const XPLocker locker(mutex);
    return !changes.isEmpty();
}

Dictionary UserDefaults::Private::takeChanges()
{
    const XPLocker locker(mutex);
    return std::exchange(changes, {});
}

void UserDefaults::Private::putBack(Dictionary unsaved)
{
    const XPLocker locker(mutex);
    for (auto newer = changes.begin(); newer != changes.end(); ++newer)
        unsaved.insert(newer.key(), *newer);
    changes = std::move(unsaved);
}

QStringList UserDefaults::Private::adopt(Dictionary fromFile)
{
    const XPLocker locker(mutex);
    apply(changes, fromFile);
    const Dictionary before = std::exchange(saved, std::move(fromFile));
    QStringList changed;
    for (auto now = saved.begin(); now != saved.end(); ++now) {
        if (*now != before.value(now.key(), registered.value(now.key())))
            changed.append(now.key());
    }
    for (auto old = before.begin(); old != before.end(); ++old) {
        if (!saved.contains(old.key()) && *old != registered.value(old.key()))
            changed.append(old.key());
    }
    return changed;
}

XPResult<QStringList> UserDefaults::Private::synchronise()
{
    const XPLocker oneAtATime(fileMutex);
    const Dictionary unsaved = takeChanges();
    auto merged = exchangeWithFile(path, unsaved);
    if (!merged) {
        putBack(unsaved);
        return merged.error();
    }
    return adopt(*std::move(merged));
}

std::optional<XPError> UserDefaults::Private::synchroniseAndAnnounce()
{
    const auto changed = synchronise();
    if (!changed)
        return changed.error();
    announce(*changed);
    return {};
}

void UserDefaults::Private::warn(const XPError &error) const
{
    qCWarning(xpLog).noquote() << "The settings file" << XPPath::printable(path)
                               << "could not be brought up to date:" << error.message;
}

QString UserDefaults::Private::notificationName(const QString &key) const
{
    return QStringLiteral("UserDefaults ") + path + u' ' + key;
}

void UserDefaults::Private::announce(const QStringList &keys) const
{
    for (const QString &key : keys)
        XPNotificationCenter::instance().post(notificationName(key));
}

namespace {

// Every object of the process, by its file. The objects are never destroyed, so that the last
// code to run may still ask them; what they have not saved is written when the process ends.
class Registry
{
public:
    static Registry &instance()
    {
        static auto &registry = *new Registry;
        return registry;
    }

    template <typename Make>
    UserDefaults &find(const QString &path, Make make) XP_EXCLUDES(m_mutex)
    {
        const XPLocker locker(m_mutex);
        UserDefaults *&defaults = m_byPath[path];
        if (!defaults)
            defaults = make();
        return *defaults;
    }

    QList<UserDefaults *> all() XP_EXCLUDES(m_mutex)
    {
        const XPLocker locker(m_mutex);
        return m_byPath.values();
    }

private:
    XPMutex m_mutex;
    QHash<QString, UserDefaults *> m_byPath XP_GUARDED_BY(m_mutex);
};

} // namespace

UserDefaults::UserDefaults(const QString &path) : d(std::make_unique<Private>(path))
{
}

UserDefaults::~UserDefaults() = default;

QString UserDefaults::pathForDomain(const QString &domain)
{
    return XPFolders::configuration() + u'/' + domain + QStringLiteral(".plist");
}

UserDefaults &UserDefaults::standard()
{
    static auto &defaults = forDomain(programDomain);
    return defaults;
}

UserDefaults &UserDefaults::forDomain(const QString &domain)
{
    const QString path = pathForDomain(domain);
    const QString file = XPAtomicFile::behindLinks(path).valueOr(path);
    UserDefaults &defaults =
        Registry::instance().find(file, [&file] { return new UserDefaults(file); });
    std::call_once(defaults.d->loaded, [&defaults] {
        if (const auto error = defaults.d->synchroniseAndAnnounce())
            defaults.d->warn(*error);
    });
    static const bool writesAtTheEnd = [] {
        xpLog(); // made first, so that it outlives what is registered here
        return std::atexit([] { saveAll(); }) == 0;
    }();
    Q_ASSERT(writesAtTheEnd);
    return defaults;
}

// Tells no observer: they may be gone.
void UserDefaults::saveAll()
{
    for (const UserDefaults *defaults : Registry::instance().all()) {
        if (!defaults->d->hasChanges())
            continue;
        if (const auto saved = defaults->d->synchronise(); !saved)
            defaults->d->warn(saved.error());
    }
}

void UserDefaults::registerDefaults(const Dictionary &values)
{
    QStringList changed;
    {
        const XPLocker locker(d->mutex);
        for (auto entry = values.begin(); entry != values.end(); ++entry) {
            const PropertyValue before = d->answer(entry.key());
            d->registered.insert(entry.key(), *entry);
            if (before != d->answer(entry.key()))
                changed.append(entry.key());
        }
    }
    d->announce(changed);
}

PropertyValue UserDefaults::value(const QString &key) const
{
    const XPLocker locker(d->mutex);
    return d->answer(key);
}

bool UserDefaults::isSaved(const QString &key) const
{
    const XPLocker locker(d->mutex);
    return d->saved.contains(key);
}

void UserDefaults::setValue(const QString &key, const PropertyValue &value)
{
    const auto storable = XPPropertyList::writeBinary(
        value.isNull() ? Dictionary{{key, PropertyValue::boolean(false)}}
                       : Dictionary{{key, value}});
    if (!storable) {
        qCWarning(xpLog).noquote() << "The setting" << XPPath::printable(key)
                                   << "was not changed:" << storable.error().message;
        return;
    }
    bool changed = false;
    {
        const XPLocker locker(d->mutex);
        const PropertyValue before = d->answer(key);
        const Dictionary change = {{key, value}};
        apply(change, d->saved);
        d->changes.insert(key, value);
        changed = before != d->answer(key);
        d->scheduleWrite();
    }
    if (changed)
        d->announce({key});
}

std::optional<XPError> UserDefaults::synchronise()
{
    return d->synchroniseAndAnnounce();
}

XPObservation UserDefaults::addObserver(const QString &keyPath,
                                        std::function<void(const PropertyValue &)> observer)
{
    static const QString prefix = QStringLiteral("values.");
    Q_ASSERT(keyPath.startsWith(prefix));
    const QString key = keyPath.mid(prefix.size());
    return XPNotificationCenter::instance().addObserver(
        d->notificationName(key), [this, key, observer = std::move(observer)](
                                      const XPNotification &) { observer(value(key)); });
}
