#include "RtfText.h"

#include "DocumentFacts.h"
#include "FlowText.h"
#include "TextDecoding.h"

#include <QDateTime>
#include <QHash>
#include <array>
#include <vector>

namespace {

enum class Destination : quint8 {
    Body,
    Nothing,
    Title,
    Subject,
    Author,
    Operator,
    Keywords,
    Comment,
    Company,
    Created, // the time stands in control words
    FontTable,
};

struct Group
{
    Destination destination = Destination::Body;
    int fallback = 1; // bytes that stand for a character that is given by number too
    int font = -1;
};

struct Word
{
    QByteArrayView name;
    int number = 0;
    bool hasNumber = false;
};

const QHash<QByteArray, Destination> &destinations()
{
    using D = Destination;
    static const QHash<QByteArray, Destination> table = {
        {"title", D::Title},       {"subject", D::Subject},      {"author", D::Author},
        {"operator", D::Operator}, {"keywords", D::Keywords},    {"doccomm", D::Comment},
        {"company", D::Company},   {"creatim", D::Created},      {"fonttbl", D::FontTable},
        {"colortbl", D::Nothing},  {"stylesheet", D::Nothing},   {"info", D::Nothing},
        {"pict", D::Nothing},      {"object", D::Nothing},       {"themedata", D::Nothing},
        {"datastore", D::Nothing}, {"listtable", D::Nothing},    {"listoverridetable", D::Nothing},
        {"rsidtbl", D::Nothing},   {"generator", D::Nothing},    {"fldinst", D::Nothing},
        {"revtbl", D::Nothing},    {"xmlnstbl", D::Nothing},     {"bkmkstart", D::Nothing},
        {"bkmkend", D::Nothing},   {"datafield", D::Nothing},    {"revtim", D::Nothing},
        {"printim", D::Nothing},   {"buptim", D::Nothing},       {"xe", D::Nothing},
        {"tc", D::Nothing},        {"latentstyles", D::Nothing}, {"nonshppict", D::Nothing},
        {"manager", D::Nothing},   {"category", D::Keywords},    {"filetbl", D::Nothing}};
    return table;
}

// Windows' number of a character set in the font table. [MS-WMF] 2.1.1.5.
int codePageOfCharset(int charset)
{
    static constexpr std::array<std::pair<int, int>, 16> table = {{{0, 1252},
                                                                   {77, 10000},
                                                                   {128, 932},
                                                                   {129, 949},
                                                                   {134, 936},
                                                                   {136, 950},
                                                                   {161, 1253},
                                                                   {162, 1254},
                                                                   {163, 1258},
                                                                   {177, 1255},
                                                                   {178, 1256},
                                                                   {186, 1257},
                                                                   {204, 1251},
                                                                   {222, 874},
                                                                   {238, 1250},
                                                                   {255, 437}}};
    for (const auto &[number, page] : table) {
        if (number == charset)
            return page;
    }
    return 0;
}

class Reader
{
public:
    Reader(QByteArrayView rtf, FlowText &flow, DocumentFacts *facts)
        : m_rtf(rtf), m_flow(flow), m_facts(facts)
    {
    }

    void read()
    {
        while (m_at < m_rtf.size() && !m_flow.isFull()) {
            const char c = m_rtf[m_at++];
            if (c == '{') {
                flushBytes();
                openGroup();
            } else if (c == '}') {
                flushBytes();
                closeGroup();
            } else if (c == '\\') {
                readControl();
            } else if (c != '\r' && c != '\n' && c != '\0') {
                takeByte(c);
            }
        }
        flushBytes();
        closeAll();
    }

private:
    static constexpr size_t mostGroups = 1000;
    static constexpr qsizetype longestFact = 8 << 10;

    // --- Groups

    void openGroup()
    {
        if (m_groups.size() < mostGroups)
            m_groups.push_back(m_group);
        else
            ++m_uncounted;
        m_isStarred = false;
        m_skip = 0;
    }

    void closeGroup()
    {
        const Destination ended = m_group.destination;
        if (m_uncounted > 0) {
            --m_uncounted;
        } else if (!m_groups.empty()) {
            m_group = m_groups.back();
            m_groups.pop_back();
        }
        if (m_group.destination != ended)
            finish(ended);
        m_skip = 0;
    }

    void closeAll()
    {
        m_uncounted = 0;
        while (!m_groups.empty())
            closeGroup();
    }

    void finish(Destination ended)
    {
        const QString fact = std::exchange(m_fact, {});
        if (!m_facts)
            return;
        switch (ended) {
        case Destination::Title:
            return m_facts->setTitle(fact);
        case Destination::Subject:
            return m_facts->setText(DocumentFacts::subject, fact);
        case Destination::Author:
        case Destination::Operator:
            return m_facts->addText(DocumentFacts::authors, fact);
        case Destination::Keywords:
            return m_facts->addList(DocumentFacts::keywords, fact);
        case Destination::Comment:
            return m_facts->setText(DocumentFacts::description, fact);
        case Destination::Company:
            return m_facts->addText(QStringLiteral("kMDItemOrganizations"), fact);
        case Destination::Created:
            return m_facts->setDate(
                DocumentFacts::created,
                QDateTime({m_time[0], m_time[1], m_time[2]}, {m_time[3], m_time[4], m_time[5]}));
        default:
            return;
        }
    }

    // --- Text

    void takeByte(char c)
    {
        if (m_skip > 0) {
            --m_skip;
            return;
        }
        if (m_group.destination != Destination::Nothing &&
            m_group.destination != Destination::FontTable)
            m_bytes.append(c);
    }

    void flushBytes()
    {
        if (m_bytes.isEmpty())
            return;
        const int page = m_pages.value(m_group.font, 0);
        const QByteArray name = "windows-" + QByteArray::number(page > 0 ? page : m_codePage);
        const QByteArray bytes = std::exchange(m_bytes, {});
        const bool isAscii = std::all_of(bytes.begin(), bytes.end(), [](char b) { return b > 0; });
        takeText(isAscii ? QString::fromLatin1(bytes)
                         : TextDecoding::decode(bytes, encoding(name)));
    }

    static QByteArray encoding(const QByteArray &windows)
    {
        if (windows == "windows-10000")
            return "macintosh";
        if (windows == "windows-437" || windows == "windows-850")
            return "ibm-" + windows.mid(8);
        return windows == "windows-65001" ? "utf-8" : windows;
    }

    void takeText(const QString &text)
    {
        if (m_group.destination == Destination::Body)
            m_flow.append(text);
        else if (m_fact.size() < longestFact)
            m_fact += text;
    }

    void takeUnit(int number)
    {
        flushBytes();
        const auto unit = static_cast<char16_t>(number); // negative: 65536 less, as written
        if (QChar::isHighSurrogate(unit)) {
            m_high = unit;
        } else if (QChar::isLowSurrogate(unit) && m_high != 0) {
            const char16_t pair[] = {std::exchange(m_high, u'\0'), unit};
            takeWide(QString::fromUtf16(pair, 2));
        } else {
            takeWide(QString(QChar(unit)));
        }
        m_skip = m_group.fallback;
    }

    void takeWide(const QString &text)
    {
        if (m_group.destination != Destination::Nothing &&
            m_group.destination != Destination::FontTable)
            takeText(text);
    }

    template <typename Separate>
    void separate(Separate separator)
    {
        flushBytes();
        if (m_group.destination == Destination::Body)
            (m_flow.*separator)();
        else if (m_group.destination != Destination::Nothing)
            m_fact += u' ';
    }

    // --- Control words

    void readControl()
    {
        if (m_at >= m_rtf.size())
            return;
        const char c = m_rtf[m_at];
        const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        if (isLetter)
            return obey(readWord());
        ++m_at;
        if (c == '\'')
            readHexByte();
        else if (c == '*')
            m_isStarred = true;
        else if (c == '~')
            takeByte(' ');
        else if (c == '_')
            takeByte('-');
        else if (c == '\\' || c == '{' || c == '}')
            takeByte(c);
        else if (c == '\r' || c == '\n')
            separate(&FlowText::endLine);
    }

    static int hexDigit(char c)
    {
        if (c >= '0' && c <= '9')
            return c - '0';
        const char lower = static_cast<char>(c | 0x20);
        return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
    }

    void readHexByte()
    {
        if (m_rtf.size() - m_at < 2)
            return;
        const int high = hexDigit(m_rtf[m_at]);
        const int low = hexDigit(m_rtf[m_at + 1]);
        if (high < 0 || low < 0)
            return;
        m_at += 2;
        takeByte(static_cast<char>(high * 16 + low));
    }

    Word readWord()
    {
        constexpr qsizetype longestWord = 32;
        const qsizetype start = m_at;
        const auto isLetter = [](char c) {
            return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        };
        while (m_at < m_rtf.size() && m_at - start < longestWord && isLetter(m_rtf[m_at]))
            ++m_at;
        Word word{m_rtf.sliced(start, m_at - start), 0, false};
        const bool isNegative = m_at < m_rtf.size() && m_rtf[m_at] == '-';
        m_at += isNegative;
        qint64 number = 0;
        while (m_at < m_rtf.size() && m_rtf[m_at] >= '0' && m_rtf[m_at] <= '9') {
            number = std::min<qint64>(number * 10 + (m_rtf[m_at++] - '0'), 1 << 30);
            word.hasNumber = true;
        }
        word.number = static_cast<int>(isNegative ? -number : number);
        if (m_at < m_rtf.size() && m_rtf[m_at] == ' ')
            ++m_at;
        return word;
    }

    void obey(const Word &word)
    {
        const bool wasStarred = std::exchange(m_isStarred, false);
        if (word.name == "u" && word.hasNumber)
            return takeUnit(word.number);
        if (word.name == "bin")
            m_at += std::clamp<qsizetype>(word.number, 0, m_rtf.size() - m_at);
        else if (word.name == "uc")
            m_group.fallback = std::clamp(word.number, 0, 16);
        else if (word.name == "ansicpg")
            m_codePage = word.number;
        else if (word.name == "mac")
            m_codePage = 10000;
        else if (word.name == "f" || word.name == "fcharset" || word.name == "plain")
            obeyFont(word);
        else if (!obeySeparator(word.name) && !obeyTime(word))
            obeyDestination(word.name, wasStarred);
    }

    void obeyFont(const Word &word)
    {
        flushBytes();
        if (word.name == "f")
            m_group.font = word.number;
        else if (word.name == "plain")
            m_group.font = -1;
        else if (m_group.destination == Destination::FontTable && m_pages.size() < 5000)
            m_pages.insert(m_group.font, codePageOfCharset(word.number));
    }

    bool obeySeparator(QByteArrayView name)
    {
        if (name == "par" || name == "line" || name == "row" || name == "sect" || name == "page")
            separate(&FlowText::endLine);
        else if (name == "cell" || name == "nestcell")
            separate(&FlowText::endCell);
        else if (name == "tab" || name == "emspace" || name == "enspace")
            separate(&FlowText::addGap);
        else
            return obeySign(name);
        return true;
    }

    bool obeySign(QByteArrayView name)
    {
        static constexpr std::array<std::pair<const char *, char16_t>, 7> signs = {
            {{"emdash", u'\u2014'},
             {"endash", u'\u2013'},
             {"lquote", u'\u2018'},
             {"rquote", u'\u2019'},
             {"ldblquote", u'\u201C'},
             {"rdblquote", u'\u201D'},
             {"bullet", u'\u2022'}}};
        for (const auto &[word, sign] : signs) {
            if (name == word) {
                flushBytes();
                takeWide(QString(QChar(sign)));
                return true;
            }
        }
        return false;
    }

    bool obeyTime(const Word &word)
    {
        static constexpr std::array<const char *, 6> parts = {"yr", "mo", "dy", "hr", "min", "sec"};
        for (size_t i = 0; i < parts.size(); ++i) {
            if (word.name == parts[i]) {
                if (m_group.destination == Destination::Created)
                    m_time[i] = word.number;
                return true;
            }
        }
        return false;
    }

    void obeyDestination(QByteArrayView name, bool wasStarred)
    {
        const auto &known = destinations();
        const auto found = known.find(name.toByteArray());
        if (found == known.end()) {
            if (wasStarred)
                m_group.destination = Destination::Nothing;
            return;
        }
        flushBytes();
        // Inside what is left out only the information group has anything to say.
        const bool isFact = *found != Destination::Nothing;
        if (m_group.destination == Destination::Body ||
            (isFact && m_group.destination == Destination::Nothing && m_groups.size() <= 4))
            m_group.destination = *found;
    }

    QByteArrayView m_rtf;
    FlowText &m_flow;
    DocumentFacts *m_facts;
    qsizetype m_at = 0;
    std::vector<Group> m_groups;
    Group m_group;
    qsizetype m_uncounted = 0; // groups that are open beyond those remembered
    bool m_isStarred = false;
    int m_skip = 0; // bytes to pass over: a character that was given by number
    char16_t m_high = 0;
    int m_codePage = 1252;
    QHash<int, int> m_pages; // of fonts
    QByteArray m_bytes;      // text not decoded yet
    QString m_fact;
    std::array<int, 6> m_time = {};
};

} // namespace

bool RtfText::read(QByteArrayView rtf, FlowText &flow, DocumentFacts *facts)
{
    if (!rtf.startsWith("{\\rtf"))
        return false;
    Reader(rtf, flow, facts).read();
    return true;
}
