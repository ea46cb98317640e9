#include "XPRtfText.h"

#include <QByteArray>
#include <QStringDecoder>
#include <algorithm>
#include <array>
#include <vector>

namespace {

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Groups whose text is not the document's.
bool isHiddenGroup(QByteArrayView word)
{
    static constexpr std::array<const char *, 12> words = {
        "fonttbl", "colortbl", "stylesheet", "info",      "pict",      "header",
        "footer",  "object",   "fldinst",    "listtable", "generator", "themedata"};
    return std::any_of(words.begin(), words.end(),
                       [word](const char *hidden) { return word == QByteArrayView(hidden); });
}

class Reader
{
public:
    Reader(QByteArrayView rtf, qsizetype most) : m_rtf(rtf), m_most(most) {}

    QString read()
    {
        while (m_at < m_rtf.size() && m_text.size() < m_most)
            step(m_rtf[m_at++]);
        return m_text.left(m_most);
    }

private:
    struct Group
    {
        bool isHidden = false;
        int unicodeFollowers = 1; // characters for readers without Unicode after each \u
    };
    static constexpr size_t deepest = 1000;

    void step(char c)
    {
        if (c == '{') {
            if (m_groups.size() < deepest)
                m_groups.push_back(m_groups.back());
        } else if (c == '}') {
            if (m_groups.size() > 1)
                m_groups.pop_back();
        } else if (c == '\\') {
            control();
        } else if (c != '\r' && c != '\n') {
            add(QChar::fromLatin1(c));
        }
    }

    void add(QChar character)
    {
        if (m_skip > 0)
            --m_skip;
        else if (!m_groups.back().isHidden)
            m_text.append(character);
    }

    void control()
    {
        if (m_at >= m_rtf.size())
            return;
        const char c = m_rtf[m_at];
        if (isLetter(c)) {
            word();
            return;
        }
        ++m_at;
        if (c == '\'') {
            const QByteArray byte = QByteArray::fromHex(
                m_rtf.sliced(m_at, std::min<qsizetype>(2, m_rtf.size() - m_at)).toByteArray());
            m_at = std::min(m_at + 2, m_rtf.size());
            // Windows' Latin letters are nearly all that is met.
            add(byte.isEmpty() ? QChar(u'?') : QChar::fromLatin1(byte[0]));
        } else if (c == '*') {
            m_groups.back().isHidden = true;
        } else if (c == '~') {
            add(u' ');
        } else if (c == '\\' || c == '{' || c == '}') {
            add(QChar::fromLatin1(c));
        }
    }

    void word()
    {
        const qsizetype begin = m_at;
        while (m_at < m_rtf.size() && isLetter(m_rtf[m_at]))
            ++m_at;
        const QByteArrayView word = m_rtf.sliced(begin, m_at - begin);
        const int number = parameter();
        if (m_at < m_rtf.size() && m_rtf[m_at] == ' ')
            ++m_at;
        if (word == QByteArrayView("u")) {
            add(QChar(static_cast<char16_t>(number)));
            m_skip = m_groups.back().unicodeFollowers;
        } else if (word == QByteArrayView("uc")) {
            m_groups.back().unicodeFollowers = std::clamp(number, 0, 16);
        } else if (word == QByteArrayView("par") || word == QByteArrayView("line")) {
            add(u'\n');
        } else if (word == QByteArrayView("tab")) {
            add(u'\t');
        } else if (isHiddenGroup(word)) {
            m_groups.back().isHidden = true;
        }
    }

    int parameter()
    {
        const bool isNegative = m_at < m_rtf.size() && m_rtf[m_at] == '-';
        m_at += isNegative ? 1 : 0;
        int number = 0;
        for (; m_at < m_rtf.size() && isDigit(m_rtf[m_at]); ++m_at)
            number = std::min(number * 10 + (m_rtf[m_at] - '0'), 1 << 20);
        return isNegative ? -number : number;
    }

    const QByteArrayView m_rtf;
    const qsizetype m_most;
    qsizetype m_at = 0;
    int m_skip = 0;
    std::vector<Group> m_groups{1};
    QString m_text;
};

} // namespace

QString XPRtfText::characters(QByteArrayView rtf, qsizetype most)
{
    return Reader(rtf, most).read();
}
