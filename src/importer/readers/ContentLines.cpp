#include "ContentLines.h"

#include "TextDecoding.h"

#include <algorithm>

static constexpr qsizetype longestLine = 4 << 20; // pictures stand in them
static constexpr qsizetype mostParameters = 50;

QByteArray ContentLines::unfolded()
{
    QByteArray line;
    bool isQuoted = false;
    while (m_at < m_bytes.size()) {
        qsizetype end = m_bytes.indexOf('\n', m_at);
        end = end < 0 ? m_bytes.size() : end;
        QByteArrayView piece = m_bytes.sliced(m_at, end - m_at);
        const bool isFolded = !line.isEmpty() && (piece.startsWith(' ') || piece.startsWith('\t'));
        // A quoted-printable value goes on behind an equals sign at the end.
        const bool isSoft = isQuoted && line.endsWith('=');
        if (!line.isEmpty() && !isFolded && !isSoft)
            break;
        if (isSoft)
            line.chop(1);
        else if (isFolded)
            piece = piece.sliced(1);
        m_at = std::min(end + 1, m_bytes.size());
        if (piece.endsWith('\r'))
            piece.chop(1);
        if (line.isEmpty())
            isQuoted = piece.toByteArray().toUpper().contains("QUOTED-PRINTABLE");
        line.append(piece.first(std::min(piece.size(), longestLine - line.size())));
    }
    return line;
}

// Where the value begins: behind the first colon outside of quotes; -1: nowhere.
static qsizetype valueOf(QByteArrayView line)
{
    bool isQuoted = false;
    for (qsizetype at = 0; at < line.size(); ++at) {
        if (line[at] == '"')
            isQuoted = !isQuoted;
        else if (line[at] == ':' && !isQuoted)
            return at;
    }
    return -1;
}

bool ContentLines::next(Line &line)
{
    while (m_at < m_bytes.size()) {
        const QByteArray text = unfolded();
        const qsizetype colon = valueOf(text);
        if (colon <= 0)
            continue;
        line = {};
        const QList<QByteArray> head = text.first(colon).split(';');
        line.name = head[0].mid(head[0].lastIndexOf('.') + 1).toUpper().trimmed();
        for (qsizetype i = 1; i < std::min(head.size(), mostParameters); ++i) {
            const qsizetype equals = head[i].indexOf('=');
            if (equals < 0) // vCard 2.1: the value alone
                line.parameters.insert(head[i].toUpper(), {});
            else
                line.parameters.insert(head[i].first(equals).toUpper(), head[i].mid(equals + 1));
        }
        line.value = text.mid(colon + 1);
        const bool isPrintable =
            line.parameters.value("ENCODING").toUpper() == "QUOTED-PRINTABLE" ||
            line.parameters.contains("QUOTED-PRINTABLE");
        if (isPrintable)
            line.value = QByteArray::fromPercentEncoding(line.value, '=');
        return true;
    }
    return false;
}

// --- Values

static QString decoded(const ContentLines::Line &line)
{
    return TextDecoding::decode(line.value, line.parameters.value("CHARSET"));
}

QString ContentLines::Line::text() const
{
    QString text;
    const QString all = decoded(*this);
    for (qsizetype at = 0; at < all.size(); ++at) {
        if (all[at] != u'\\' || at + 1 == all.size()) {
            text += all[at];
            continue;
        }
        const QChar next = all[++at];
        text += next == u'n' || next == u'N' ? QChar(u'\n') : next;
    }
    return text;
}

QStringList ContentLines::Line::components() const
{
    QStringList list = {QString()};
    const QString all = decoded(*this);
    for (qsizetype at = 0; at < all.size(); ++at) {
        if (all[at] == u';')
            list.append(QString());
        else if (all[at] == u'\\' && at + 1 < all.size())
            list.last() += all[++at] == u'n' ? QChar(u' ') : all[at];
        else
            list.last() += all[at];
    }
    return list;
}
