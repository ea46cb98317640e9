#include "KPTagHealer.h"

#include "IndexBytesKey.h"
#include "Karvex.h"
#include "MetadataIndex.h"
#include "UserDefaults.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QHash>
#include <algorithm>
#include <cerrno>

using namespace std::chrono_literals;

// For a program that sets attributes itself after it made the file.
static constexpr auto settling = 500ms;
// A file that is replaced again before the index saw the attributes is not heard of.
static constexpr auto lookAgainAfter = 1500ms;

KPTagHealer::KPTagHealer(MetadataIndex &index) : m_index(index)
{
    m_thread = std::thread([this] { loop(); });
    m_index.setLossListener([this](IndexLoss loss) { take(std::move(loss)); });
}

KPTagHealer::~KPTagHealer()
{
    m_index.setLossListener({});
    {
        const XPLocker lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void KPTagHealer::take(IndexLoss loss)
{
    {
        const XPLocker lock(m_mutex);
        const auto due = Clock::now() + settling;
        const auto place =
            std::upper_bound(m_tasks.begin(), m_tasks.end(), due,
                             [](auto time, const Task &task) { return time < task.due; });
        m_tasks.insert(place, Task{due, std::move(loss), {}, {}});
    }
    m_wake.notify_all();
}

void KPTagHealer::lookAgainLater(const Task &task)
{
    const XPLocker lock(m_mutex);
    m_tasks.push_back(task);
    m_tasks.back().due = Clock::now() + lookAgainAfter; // nothing is due later
}

void KPTagHealer::loop()
{
    for (;;) {
        std::vector<Task> tasks = nextTasks();
        if (tasks.empty())
            return;
        if (UserDefaults::standard().value(QStringLiteral("KPHealLostTags")).boolValue(true))
            work(std::move(tasks));
    }
}

std::vector<KPTagHealer::Task> KPTagHealer::nextTasks()
{
    XPLocker lock(m_mutex);
    while (!m_stopping && (m_tasks.empty() || m_tasks.front().due > Clock::now())) {
        if (m_tasks.empty())
            m_wake.wait(lock);
        else
            m_wake.wait_until(lock, m_tasks.front().due);
    }
    std::vector<Task> tasks;
    while (!m_tasks.empty() && (m_stopping || m_tasks.front().due <= Clock::now())) {
        tasks.push_back(std::move(m_tasks.front()));
        m_tasks.pop_front();
    }
    return tasks;
}

// The bytes that stood on the file: the index keeps them beside a value that we would write in
// another way. What it could not keep is named in `missing`: such a file is not healed halfway.
static QMap<QString, QByteArray> bytesOf(const PropertyValue::Dictionary &attributes,
                                         QStringList &missing)
{
    QMap<QString, QByteArray> bytes;
    for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute) {
        const QString &name = attribute.key();
        if (IndexBytesKey::is(name))
            continue;
        const PropertyValue kept = attributes.value(IndexBytesKey::of(name), *attribute);
        const auto list = kept.kind() == PropertyValue::Kind::Data
                              ? XPResult<QByteArray>(kept.data())
                              : XPPropertyList::writeBinary(kept);
        if (list)
            bytes.insert(name, *list);
        else
            missing.append(XPPath::printable(name));
    }
    return bytes;
}

static KPHealing healingOf(const IndexLoss &loss)
{
    KPHealing healing;
    QStringList missing;
    healing.path = XPPath::decode(loss.path);
    healing.time = PropertyValue::Date::now();
    healing.attributes = bytesOf(loss.attributes, missing);
    if (!missing.isEmpty())
        healing.why = QStringLiteral("the bytes of %1 are not known any more")
                          .arg(missing.join(QStringLiteral(", ")));
    else if (loss.typeBefore != loss.type)
        healing.why = QStringLiteral("the file was of type %1 and is now of type %2")
                          .arg(loss.typeBefore, loss.type);
    else if (!loss.isSeen)
        healing.why = QStringLiteral("the file was replaced while nobody watched");
    return healing;
}

// A file that was replaced while attributes were put on it, one after the other, may be told of
// with a part of them: what was being put there counts then.
void KPTagHealer::completeFromRecent(std::vector<Task> &tasks)
{
    QHash<QString, QMap<QString, QByteArray>> recent;
    const auto note = [&](const Task &task) {
        if (task.healing.number)
            recent.insert(task.healing.path, task.healing.attributes);
    };
    std::for_each(tasks.begin(), tasks.end(), note);
    {
        const XPLocker lock(m_mutex);
        std::for_each(m_tasks.begin(), m_tasks.end(), note);
    }
    for (Task &task : tasks) {
        const auto whole = recent.constFind(task.healing.path);
        if (task.healing.number || whole == recent.cend())
            continue;
        const auto &part = task.healing.attributes;
        const bool isPart = std::all_of(part.keyBegin(), part.keyEnd(), [&](const QString &name) {
            return whole->value(name) == part.value(name);
        });
        if (isPart)
            task.healing.attributes = *whole;
    }
}

// The log is written before any file, so that what a file had is never in memory alone.
void KPTagHealer::work(std::vector<Task> tasks)
{
    std::vector<Task *> fresh;
    for (Task &task : tasks) {
        if (!task.healing.number)
            task.healing = healingOf(task.loss);
    }
    completeFromRecent(tasks);
    for (Task &task : tasks) {
        if (task.healing.number)
            continue;
        // One that nobody saw may be on a volume that hangs: no file call.
        if (!task.healing.attributes.isEmpty() && KPHealing::haveNoTags(task.loss.present) &&
            (!task.loss.isSeen || KPHealing::hasNoTags(task.healing.path).valueOr(false)))
            fresh.push_back(&task);
    }
    const auto save = [](const auto &change) {
        const auto error = KPHealingLog::change(change);
        if (error)
            qCWarning(xpLog).noquote()
                << "the log of healed files cannot be written:" << error->message;
        return !error;
    };
    const bool isSaved = fresh.empty() || save([&](QList<KPHealing> &cases) {
                             for (Task *task : fresh) {
                                 task->healing.number = KPHealingLog::nextNumber(cases);
                                 cases.append(task->healing);
                             }
                         });
    if (!isSaved)
        return;
    QHash<qint64, KPHealing> done;
    for (Task &task : tasks) {
        const KPHealing::State before = task.healing.state;
        if (task.healing.number && task.healing.why.isEmpty())
            healOne(task);
        if (task.healing.state != before)
            done.insert(task.healing.number, task.healing);
    }
    if (done.isEmpty())
        return;
    save([&](QList<KPHealing> &cases) {
        for (KPHealing &each : cases)
            each = done.value(each.number, each);
    });
}

void KPTagHealer::healOne(Task &task)
{
    KPHealing &healing = task.healing;
    const auto info = XPFileInfo::read(healing.path);
    // Somebody removed them from the very file that was healed: on purpose.
    if (!info || (info->inode == task.healed.inode && info->birth == task.healed.birth))
        return;
    if (const auto error = healing.heal()) {
        if (error->code == ESTALE) { // saved once more while they were put back
            lookAgainLater(task);
            return;
        }
        if (task.healed.inode == 0) {
            healing.state = KPHealing::State::Failed;
            healing.why = error->reason();
        }
        return;
    }
    healing.state = KPHealing::State::Healed;
    task.healed = *info;
    qCInfo(xpLog).noquote() << "tags were put back that a program dropped:"
                            << XPPath::printable(healing.path);
    lookAgainLater(task);
}
