#include "KPDocTitles.h"

#include <QRegularExpression>
#include <QStringList>
#include <algorithm>
#include <unicode/unistr.h>

static constexpr qsizetype messageHead = 256 << 10;

static bool isSpace(char c)
{
    return c == ' ' || c == '\t';
}

// The value of a header field, its continuation lines joined. RFC 5322, 2.2.3.
static QByteArray fieldIn(QByteArrayView message, QByteArrayView name)
{
    QByteArray value;
    bool isInField = false;
    for (qsizetype at = 0; at < message.size();) {
        qsizetype end = message.indexOf('\n', at);
        end = end < 0 ? message.size() : end;
        QByteArrayView line = message.sliced(at, end - at);
        at = end + 1;
        if (line.endsWith('\r'))
            line.chop(1);
        if (line.isEmpty() || (isInField && !isSpace(line.front())))
            break; // the end of the header, or of the field
        if (isInField) {
            value.append(line);
        } else if (line.size() > name.size() && line[name.size()] == ':' &&
                   line.first(name.size()).compare(name, Qt::CaseInsensitive) == 0) {
            value.append(line.sliced(name.size() + 1));
            isInField = true;
        }
    }
    return value;
}

static QString decodedText(const QByteArray &bytes, const QByteArray &charset)
{
    const auto text = icu::UnicodeString(bytes.constData(), static_cast<int32_t>(bytes.size()),
                                         charset.constData());
    return QString::fromUtf16(text.getBuffer(), text.length());
}

static QByteArray decodedQ(QByteArray text)
{
    return QByteArray::fromPercentEncoding(text.replace('_', ' '), '=');
}

// Encoded words (RFC 2047) among plain text. Space between two of them is not part of the text,
// and a character may be split over two words of one character set.
static QString decodedWords(const QByteArray &value)
{
    static const QRegularExpression word(
        QStringLiteral("=\\?([!->@-~]+)\\?([bBqQ])\\?([!->@-~]*)\\?="));
    const auto plain = [](const QString &latin) {
        const QByteArray bytes = latin.toLatin1();
        const QString utf8 = QString::fromUtf8(bytes);
        return utf8.contains(QChar::ReplacementCharacter) ? decodedText(bytes, "windows-1252")
                                                          : utf8;
    };
    const QString latin = QString::fromLatin1(value);
    QString text;
    QByteArray pending;
    QByteArray charset;
    const auto flush = [&] { text += decodedText(std::exchange(pending, {}), charset); };
    qsizetype after = 0;
    for (auto it = word.globalMatch(latin); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const QString between = latin.mid(after, match.capturedStart() - after);
        const QByteArray newCharset =
            match.captured(1).section(u'*', 0, 0).toLatin1().toLower(); // "*": a language
        const bool isFirst = after == 0;
        if (isFirst || !between.trimmed().isEmpty()) {
            flush();
            text += plain(between);
        } else if (newCharset != charset) {
            flush();
        }
        charset = newCharset;
        const QByteArray encoded = match.captured(3).toLatin1();
        pending += match.captured(2).compare(u'b', Qt::CaseInsensitive) == 0
                       ? QByteArray::fromBase64(encoded)
                       : decodedQ(encoded);
        after = match.capturedEnd();
    }
    flush();
    return text + plain(latin.mid(after));
}

// One line, whatever it holds.
static QString asTitle(QString text)
{
    for (QChar &c : text) {
        if (c.category() == QChar::Other_Control)
            c = u' ';
    }
    return text.simplified();
}

QString KPDocTitles::subjectIn(QByteArrayView message)
{
    message.truncate(std::min(message.size(), messageHead));
    const qsizetype lineEnd = message.indexOf('\n');
    const QByteArrayView first = message.first(std::max<qsizetype>(lineEnd, 0)).trimmed();
    const bool isLength = !first.isEmpty() && std::all_of(first.begin(), first.end(), [](char c) {
        return c >= '0' && c <= '9';
    });
    if (isLength)
        message = message.sliced(lineEnd + 1);
    return asTitle(decodedWords(fieldIn(message, "subject")));
}
