#include "KPCommandOutput.h"

#include "XPPath.h"

#include <cerrno>
#include <cstdio>
#include <unistd.h>

KPCommandOutput::KPCommandOutput(const KPCommandLine &line)
    : m_isJson(line.has("--json")),
      m_isQuoting(!line.has("--print0") && ::isatty(STDOUT_FILENO) == 1),
      m_separator(line.has("--print0") ? '\0' : '\n')
{
}

// As the shell's $'…', where the name could not be seen or would end the line.
static QString quoted(const QString &name)
{
    if (XPPath::printable(name) == name)
        return name;
    QString escaped = name;
    escaped.replace(u'\\', QStringLiteral("\\\\")).replace(u'\'', QStringLiteral("\\'"));
    return QStringLiteral("$'") + XPPath::printable(escaped) + u'\'';
}

QByteArray KPCommandOutput::name(const QString &text) const
{
    if (m_isQuoting)
        return quoted(text).toUtf8();
    // A tag of another writer can be no text at all; a file name is always bytes.
    const QByteArray bytes = XPPath::encode(text);
    return bytes.isEmpty() ? XPPath::printable(text).toUtf8() : bytes;
}

void KPCommandOutput::write(const QByteArray &bytes)
{
    constexpr qsizetype enough = 64 * 1024;
    m_buffer += bytes;
    if (m_buffer.size() >= enough)
        flush();
}

bool KPCommandOutput::flush()
{
    const QByteArray bytes = std::exchange(m_buffer, {});
    for (qsizetype at = 0; at < bytes.size() && !m_isBroken;) {
        const ssize_t written =
            ::write(STDOUT_FILENO, bytes.constData() + at, static_cast<size_t>(bytes.size() - at));
        if (written >= 0) {
            at += written;
        } else if (errno != EINTR) {
            m_isBroken = true;
            fail(QStringLiteral("standard output: ") + XPError::fromErrno(errno).reason());
        }
    }
    return !m_isBroken;
}

void KPCommandOutput::fail(const QString &path, const QString &message)
{
    fail(quoted(path) + QStringLiteral(": ") + message);
}

void KPCommandOutput::fail(const QString &message)
{
    m_hasFailed = true;
    note(message);
}

void KPCommandOutput::note(const QString &message)
{
    const QByteArray line = "murnctl: " + XPPath::printable(message).toUtf8() + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stderr);
}

void KPCommandOutput::fail(const QString &path, const char *what, const XPError &error)
{
    const bool isSystems = error.domain == XPError::posixDomain;
    const QString where = QLatin1String(what) + QStringLiteral(": ");
    // The system's own words do not say what it is that is not supported.
    if (isSystems && error.kind == XPError::Kind::Unsupported)
        fail(path, where + QStringLiteral("its disk keeps no attributes"));
    else
        fail(path, isSystems ? error.reason() : where + error.reason());
}

int KPCommandOutput::exitStatus()
{
    flush();
    return m_hasFailed ? KPExitFailed : KPExitDone;
}

QByteArray KPCommandOutput::json(const QString &text)
{
    QString escaped(u'"');
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool isPair =
            c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isPair)
            escaped += c;
        if (isPair)
            escaped += text[++i];
        else if (c == u'"' || c == u'\\')
            escaped += QStringLiteral("\\") + c;
        else if (c.unicode() < 0x20 || c.unicode() == 0x7F || c.isSurrogate())
            escaped += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        else
            escaped += c;
    }
    return (escaped + u'"').toUtf8();
}

QByteArray KPCommandOutput::json(const QStringList &texts)
{
    QByteArrayList parts;
    for (const QString &text : texts)
        parts.append(json(text));
    return '[' + parts.join(", ") + ']';
}

int kpReportUsage(const KPCommand *command, const QString &message)
{
    const QByteArray name = command ? QByteArray(" ") + command->name : QByteArray();
    std::fprintf(stderr, "murnctl: %s\nTry 'murnctl%s --help'.\n", message.toUtf8().constData(),
                 name.constData());
    return KPExitUsage;
}
