#include "ImportAttempts.h"

#include "XPAtomicFile.h"
#include "XPLog.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

using Case = ImportAttempts::Case;
using Dictionary = PropertyValue::Dictionary;

// --- The saved form

static Dictionary dictionaryOf(const Case &one)
{
    return {{QStringLiteral("path"), one.path},
            {QStringLiteral("device"), PropertyValue::integer(one.device)},
            {QStringLiteral("inode"), PropertyValue::integer(one.inode)},
            {QStringLiteral("size"), PropertyValue::integer(one.size)},
            {QStringLiteral("modified"), PropertyValue::integer(one.modified)},
            {QStringLiteral("breaks"), PropertyValue::integer(one.breaks)},
            {QStringLiteral("interruptions"), PropertyValue::integer(one.interruptions)},
            {QStringLiteral("failure"), documentFailureName(one.failure)},
            {QStringLiteral("reason"), one.reason}};
}

static Case caseFrom(const Dictionary &values)
{
    const auto number = [&](const char *key) { return values[QLatin1String(key)].integerValue(); };
    const auto count = [&](const char *key) {
        return static_cast<int>(std::clamp<qint64>(number(key), 0, 1000));
    };
    return {values[QStringLiteral("path")].data(),
            number("device"),
            number("inode"),
            number("size"),
            number("modified"),
            count("breaks"),
            count("interruptions"),
            documentFailureNamed(values[QStringLiteral("failure")].string())
                .value_or(DocumentFailure::Crashed),
            values[QStringLiteral("reason")].string()};
}

static QList<Case> casesIn(const QString &path)
{
    QList<Case> cases;
    const auto bytes = XPAtomicFile::read(path, 16 << 20);
    if (!bytes)
        return cases;
    const PropertyValue saved = XPPropertyList::read(*bytes).valueOr({});
    for (const PropertyValue &each : saved.array())
        cases.append(caseFrom(each.dictionary()));
    return cases;
}

// The document at work: a length, then a case of it. A length of zero: none.
static std::optional<Case> caseAtWork(int file)
{
    quint32 size = 0;
    if (::pread(file, &size, sizeof size, 0) != sizeof size || size == 0 || size > (64 << 10))
        return {};
    QByteArray bytes(size, '\0');
    if (::pread(file, bytes.data(), size, sizeof size) != static_cast<ssize_t>(size))
        return {};
    const auto value = XPPropertyList::readBinary(bytes);
    return value ? std::optional(caseFrom(value->dictionary())) : std::nullopt;
}

// --- Cases

static bool isOf(const Case &one, const ImportDocument &document)
{
    return one.path == document.path && one.device == document.device &&
           one.inode == document.inode && one.size == document.size &&
           one.modified == document.modified;
}

static Case newCase(const ImportDocument &document)
{
    Case one;
    one.path = document.path;
    one.device = document.device;
    one.inode = document.inode;
    one.size = document.size;
    one.modified = document.modified;
    return one;
}

ImportAttempts::ImportAttempts(const QString &path) : m_path(path)
{
    if (m_path.isEmpty())
        return;
    m_cases = casesIn(m_path);
    const QByteArray name = XPPath::encode(m_path + QStringLiteral(".trying"));
    m_trying =
        XPFileDescriptor(::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    noteInterruption();
}

ImportAttempts::~ImportAttempts()
{
    clear();
}

void ImportAttempts::noteInterruption()
{
    const auto interrupted = caseAtWork(m_trying.get());
    clear();
    if (!interrupted)
        return;
    const auto known = std::find_if(m_cases.begin(), m_cases.end(), [&](const Case &one) {
        return one.path == interrupted->path && one.inode == interrupted->inode &&
               one.size == interrupted->size && one.modified == interrupted->modified;
    });
    Case &one = known == m_cases.end() ? m_cases.emplace_back(*interrupted) : *known;
    ++one.interruptions;
    if (one.reason.isEmpty())
        one.reason = QStringLiteral("everything ended while it was read");
    save();
}

const Case *ImportAttempts::caseOf(const ImportDocument &document) const
{
    const auto found = std::find_if(m_cases.begin(), m_cases.end(),
                                    [&](const Case &one) { return isOf(one, document); });
    return found == m_cases.end() ? nullptr : &*found;
}

Case &ImportAttempts::caseFor(const ImportDocument &document)
{
    const auto found = std::find_if(m_cases.begin(), m_cases.end(),
                                    [&](const Case &one) { return one.path == document.path; });
    if (found == m_cases.end()) {
        if (m_cases.size() >= maximumCases)
            m_cases.removeFirst();
        return m_cases.emplace_back(newCase(document));
    }
    if (!isOf(*found, document)) // it changed since
        *found = newCase(document);
    return *found;
}

void ImportAttempts::begin(const ImportDocument &document)
{
    if (!m_trying.isOpen())
        return;
    QByteArray bytes = XPPropertyList::writeBinary(dictionaryOf(newCase(document))).valueOr({});
    const auto size = static_cast<quint32>(bytes.size());
    bytes.prepend(reinterpret_cast<const char *>(&size), sizeof size);
    if (::pwrite(m_trying.get(), bytes.constData(), static_cast<size_t>(bytes.size()), 0) !=
        bytes.size())
        clear(); // a full disk: half of one is none
}

void ImportAttempts::broke(const ImportDocument &document, const ImportWorker::Break &how)
{
    Case &one = caseFor(document);
    ++one.breaks;
    one.failure = how.failure;
    one.reason = how.reason;
    save();
    clear();
}

void ImportAttempts::succeeded(const ImportDocument &document)
{
    clear();
    if (m_cases.removeIf([&](const Case &one) { return one.path == document.path; }) > 0)
        save();
}

void ImportAttempts::gaveUp()
{
    clear();
}

void ImportAttempts::clear() const
{
    const quint32 none = 0;
    if (m_trying.isOpen() && ::pwrite(m_trying.get(), &none, sizeof none, 0) != sizeof none)
        qCWarning(xpLog) << "cannot note that a document was read";
}

void ImportAttempts::save() const
{
    if (m_path.isEmpty())
        return;
    PropertyValue::Array array;
    for (const Case &one : m_cases)
        array.append(dictionaryOf(one));
    const auto bytes = XPPropertyList::writeBinary(array);
    const auto error = bytes ? XPAtomicFile::write(m_path, *bytes) : bytes.error();
    if (error)
        qCWarning(xpLog).noquote() << error->message;
}

QList<Case> ImportAttempts::notRead(const QString &path)
{
    QList<Case> cases = casesIn(path);
    cases.removeIf([](const Case &one) {
        struct stat facts = {};
        return (one.breaks == 0 && !one.isLeftAlone()) ||
               ::lstat(one.path.constData(), &facts) != 0 ||
               static_cast<qint64>(facts.st_ino) != one.inode || facts.st_size != one.size ||
               qint64{facts.st_mtim.tv_sec} * 1'000'000'000 + facts.st_mtim.tv_nsec != one.modified;
    });
    return cases;
}
