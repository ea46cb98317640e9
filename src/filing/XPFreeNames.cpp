#include "XPFreeNames.h"

#include "XPFolderNames.h"
#include "XPPath.h"
#include "XPText.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <linux/limits.h>
#include <sys/stat.h>
#include <unistd.h>

// No file system that people keep documents on allows less.
static constexpr qsizetype alwaysShortEnough = 128;

static bool isAscii(QByteArrayView bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) == 0; });
}

// One for each name whatever its spelling. Undecodable bytes stand for themselves.
static size_t keyOf(QByteArrayView name)
{
    return isAscii(name) ? qHash(name)
                         : qHash(QByteArrayView(XPPath::encode(decomposed(XPPath::decode(name)))));
}

// Whether another name could be the same text: of plain letters only these three have a twin
// (the Kelvin sign, the Greek question mark, the Greek varia).
static bool hasOneSpelling(QByteArrayView name)
{
    return std::all_of(name.begin(), name.end(),
                       [](char c) { return (c & 0x80) == 0 && c != 'K' && c != ';' && c != '`'; });
}

// Without its last character as people see it: a letter goes with the marks on it.
static QString shortened(QString text)
{
    bool wasMark = true;
    while (wasMark && !text.isEmpty()) {
        const qsizetype size = text.size();
        wasMark = text.back().isMark();
        const bool isPair =
            size > 1 && text.back().isLowSurrogate() && text[size - 2].isHighSurrogate();
        text.chop(isPair ? 2 : 1);
    }
    return text;
}

XPFreeNames::XPFreeNames(const QString &folder)
    : m_folder(folder), m_folderBytes(XPPath::encode(folder) + '/')
{
}

QString XPFreeNames::pathOf(const QString &name) const
{
    return m_folder == u"/" ? u'/' + name : m_folder + u'/' + name;
}

QString XPFreeNames::take(const QString &name)
{
    const QString extension = XPPath::extension(name);
    Parts parts = {name, {}};
    if (!extension.isEmpty()) {
        parts.stem.chop(extension.size() + 1);
        parts.end = u'.' + extension;
    }
    QString candidate = name;
    for (int number = 1; number <= mostNumbers + 1; ++number) {
        const State state = stateOf(candidate);
        if (state == State::Free) {
            m_taken.insert(keyOf(XPPath::encode(candidate)));
            return pathOf(candidate);
        }
        if (state == State::Unknown)
            break;
        number = firstUnknown(parts, number);
        candidate = numbered(parts, number);
    }
    return pathOf(name);
}

// The first number from this one on whose name, uncut, the folder is not known to hold: a folder
// full of numbers is passed in one go. Blanks and dots decompose to themselves and take no marks.
int XPFreeNames::firstUnknown(const Parts &parts, int number) const
{
    const QByteArray end = XPPath::encode(decomposed(parts.end));
    QByteArray key = XPPath::encode(decomposed(parts.stem)) + ' ';
    const qsizetype size = key.size();
    for (; number <= mostNumbers; ++number) {
        char digits[8];
        const auto result = std::to_chars(digits, digits + sizeof digits, number);
        key.resize(size);
        key.append(digits, result.ptr - digits);
        key.append(end);
        if (!m_taken.contains(qHash(QByteArrayView(key))))
            break;
    }
    return number;
}

// Names that the folder is known to hold cost no file call.
XPFreeNames::State XPFreeNames::stateOf(const QString &name)
{
    const QByteArray bytes = XPPath::encode(name);
    if (bytes.isEmpty())
        return State::Unknown;
    if (m_taken.contains(keyOf(bytes)))
        return State::Taken;
    struct stat status = {};
    if (::lstat((m_folderBytes + bytes).constData(), &status) != 0) {
        if (errno != ENOENT)
            return State::Unknown;
        return !hasOneSpelling(bytes) && isSpelledThere(bytes) ? State::Taken : State::Free;
    }
    (void)isSpelledThere(bytes); // more names are wanted now: one reading tells all
    return State::Taken;
}

bool XPFreeNames::isSpelledThere(const QByteArray &name)
{
    if (!m_isRead) {
        m_isRead = true;
        XPFolderNames::forEach(AT_FDCWD, (m_folderBytes + '.').constData(),
                               [this](QByteArrayView found) {
                                   m_taken.insert(keyOf(found));
                                   return true;
                               });
    }
    return m_taken.contains(keyOf(name));
}

// "NAME N.EXT"; the name cut where the file system would refuse it.
QString XPFreeNames::numbered(const Parts &parts, int number)
{
    const QString end = u' ' + QString::number(number) + parts.end;
    QString stem = parts.stem;
    if (stem.size() + end.size() <= alwaysShortEnough / 3)
        return stem + end;
    const qsizetype room = longestName() - XPPath::encode(end).size();
    while (!stem.isEmpty() && XPPath::encode(stem).size() > room)
        stem = shortened(stem);
    return stem.isEmpty() ? parts.stem + parts.end : stem + end;
}

qsizetype XPFreeNames::longestName()
{
    if (m_longestName == 0) {
        const long longest = ::pathconf(m_folderBytes.constData(), _PC_NAME_MAX);
        m_longestName = longest > 0 ? longest : NAME_MAX;
    }
    return m_longestName;
}
