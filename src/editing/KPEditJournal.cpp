#include "KPEditJournal.h"

#include "XPAtomicFile.h"
#include "XPFolders.h"
#include "XPLog.h"
#include "XPPath.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

static constexpr qsizetype remembered = 100;

static const QString editEnding = QStringLiteral(".edit");
static const QString undoneEnding = QStringLiteral(".undone");
static const QString renameKey = QStringLiteral("rename");

static QString folder()
{
    return XPFolders::ourApplicationSupport() + QStringLiteral("/edits");
}

static void logProblem(const QString &file, const QString &reason)
{
    qCWarning(xpLog).noquote() << XPPath::printable(file) + u':' << reason;
}

KPEditJournal::KPEditJournal(QString file, int descriptor)
    : m_file(std::move(file)), m_descriptor(descriptor)
{
}

KPEditJournal::~KPEditJournal()
{
    ::close(m_descriptor);
}

static QByteArray line(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

static bool writeAll(int descriptor, const QByteArray &bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const auto written =
            ::write(descriptor, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

std::unique_ptr<KPEditJournal> KPEditJournal::begin(const QString &text,
                                                    const std::optional<KPTagRename> &rename)
{
    static std::atomic<int> number = 0;
    if (const auto error = XPFolders::create(folder())) {
        logProblem(folder(), error->reason());
        return nullptr;
    }
    // By name in order of time, and no other process has it.
    const QString file = QStringLiteral("%1/%2-%3-%4%5")
                             .arg(folder())
                             .arg(QDateTime::currentMSecsSinceEpoch(), 14, 10, QLatin1Char('0'))
                             .arg(::getpid())
                             .arg(++number, 6, 10, QLatin1Char('0'))
                             .arg(editEnding);
    const int descriptor = ::open(XPPath::encode(file).constData(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, 0600);
    if (descriptor < 0) {
        logProblem(file, xpErrnoString(errno));
        return nullptr;
    }
    std::unique_ptr<KPEditJournal> journal(new KPEditJournal(file, descriptor));
    QJsonObject about{{QStringLiteral("edit"), text}};
    if (rename)
        about.insert(renameKey, rename->toJson());
    if (!writeAll(descriptor, line(about)))
        logProblem(file, xpErrnoString(errno));
    return journal;
}

static QJsonArray repairedToJson(const QList<KarvexRepair::Bytes> &repaired)
{
    // Absent is null: an attribute of no bytes is something else.
    const auto json = [](const QByteArray &bytes) {
        return bytes.isNull() ? QJsonValue() : QJsonValue(QString::fromLatin1(bytes.toBase64()));
    };
    QJsonArray array;
    for (const KarvexRepair::Bytes &bytes : repaired)
        array.append(QJsonArray{bytes.name, json(bytes.before), json(bytes.after)});
    return array;
}

void KPEditJournal::append(const KPFileChange &change)
{
    QJsonObject object{{QStringLiteral("path"), change.path}};
    if (change.tags) {
        object.insert(QStringLiteral("tags"),
                      QJsonArray{QJsonArray::fromStringList(change.tags->before),
                                 QJsonArray::fromStringList(change.tags->after)});
    }
    if (change.rating)
        object.insert(QStringLiteral("rating"),
                      QJsonArray{change.rating->before, change.rating->after});
    if (change.comment)
        object.insert(QStringLiteral("comment"),
                      QJsonArray{change.comment->before, change.comment->after});
    if (!change.repaired.isEmpty())
        object.insert(QStringLiteral("repaired"), repairedToJson(change.repaired));
    if (m_failed || writeAll(m_descriptor, line(object)))
        return;
    m_failed = true; // said once; what follows cannot be undone after a crash
    logProblem(m_file, xpErrnoString(errno));
}

static QList<KarvexRepair::Bytes> repairedFrom(const QJsonArray &array)
{
    const auto bytes = [](const QJsonValue &value) {
        return value.isString() ? QByteArray::fromBase64(value.toString().toLatin1())
                                : QByteArray();
    };
    QList<KarvexRepair::Bytes> repaired;
    for (const auto each : array) {
        const QJsonArray parts = each.toArray();
        if (parts.size() == 3)
            repaired.append({parts[0].toString(), bytes(parts[1]), bytes(parts[2])});
    }
    return repaired;
}

static std::optional<KPFileChange> changeFrom(const QByteArray &bytes)
{
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    const QJsonObject object = document.object();
    KPFileChange change{object.value(QStringLiteral("path")).toString(), {}, {}};
    if (change.path.isEmpty())
        return {};
    const auto strings = [](const QJsonValue &value) {
        QStringList texts;
        for (const auto each : value.toArray())
            texts.append(each.toString());
        return texts;
    };
    if (const auto tags = object.value(QStringLiteral("tags")).toArray(); tags.size() == 2)
        change.tags = {strings(tags[0]), strings(tags[1])};
    if (const auto rating = object.value(QStringLiteral("rating")).toArray(); rating.size() == 2)
        change.rating = {rating[0].toDouble(), rating[1].toDouble()};
    if (const auto comment = object.value(QStringLiteral("comment")).toArray(); comment.size() == 2)
        change.comment = {comment[0].toString(), comment[1].toString()};
    change.repaired = repairedFrom(object.value(QStringLiteral("repaired")).toArray());
    return change.isEmpty() ? std::nullopt : std::optional(change);
}

XPResult<KPEditJournal::Contents> KPEditJournal::contents(const QString &file)
{
    const auto bytes = XPAtomicFile::read(file);
    if (!bytes)
        return bytes.error();
    return parse(*bytes);
}

KPEditJournal::Contents KPEditJournal::parse(const QByteArray &bytes)
{
    Contents contents;
    const QByteArrayList lines = bytes.split('\n');
    const QJsonObject about = QJsonDocument::fromJson(lines.constFirst()).object();
    const auto rename = KPTagRename::fromJson(about.value(renameKey).toObject());
    if (!rename.from.isEmpty())
        contents.rename = rename;
    for (qsizetype number = 1; number + 1 < lines.size(); ++number) {
        if (auto change = changeFrom(lines[number]))
            contents.changes.push_back(std::move(*change));
    }
    return contents;
}

QString KPEditJournal::mark(const QString &file, bool undone)
{
    const QString &from = undone ? editEnding : undoneEnding;
    if (!file.endsWith(from))
        return file;
    QString to = file.chopped(from.size()) + (undone ? undoneEnding : editEnding);
    if (::rename(XPPath::encode(file).constData(), XPPath::encode(to).constData()) == 0)
        return to;
    logProblem(file, xpErrnoString(errno));
    return file;
}

void KPEditJournal::remove(const QString &file)
{
    if (!file.isEmpty() && ::unlink(XPPath::encode(file).constData()) != 0 && errno != ENOENT)
        logProblem(file, xpErrnoString(errno));
}

static QString textOf(const QString &file)
{
    constexpr qsizetype longest = 4096;
    QByteArray first(longest, '\0');
    const int descriptor = ::open(XPPath::encode(file).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return {};
    const auto got = ::read(descriptor, first.data(), static_cast<size_t>(longest));
    ::close(descriptor);
    first.truncate(std::max<qsizetype>(0, got));
    const qsizetype end = first.indexOf('\n');
    if (end < 0)
        return {};
    return QJsonDocument::fromJson(first.first(end))
        .object()
        .value(QStringLiteral("edit"))
        .toString();
}

QList<KPEditJournal::Saved> KPEditJournal::saved()
{
    QList<Saved> saved;
    QStringList names = QDir(folder()).entryList(QDir::Files, QDir::Name);
    for (const QString &name : names) {
        const QString file = folder() + u'/' + name;
        if (name.endsWith(undoneEnding))
            remove(file);
        else if (name.endsWith(editEnding))
            saved.append({file, textOf(file)});
    }
    while (saved.size() > remembered)
        remove(saved.takeFirst().file);
    saved.removeIf([](const Saved &each) { return each.text.isEmpty(); });
    return saved;
}
