#include "MDQueryParser.h"

#include "PropertyValue.h"

#include <QDateTime>
#include <QTimeZone>
#include <algorithm>
#include <cmath>

static constexpr int deepest = 200;
static constexpr qsizetype longest = 1'000'000;
static constexpr double secondsADay = 86400;

namespace {

// A recursive-descent reader over the text; the first failure stops it.
class Reader
{
public:
    Reader(const QString &text, double now) : m_text(text), m_now(now) {}

    XPResult<MDPredicatePtr> readAll()
    {
        MDPredicatePtr whole = either(0);
        skipBlanks();
        if (whole && m_at < m_text.size())
            fail("something is left over");
        if (m_error)
            return *m_error;
        return whole;
    }

private:
    MDPredicatePtr either(int depth);
    MDPredicatePtr both(int depth);
    MDPredicatePtr one(int depth);
    MDPredicatePtr inRange(std::shared_ptr<MDPredicate> predicate);
    MDPredicatePtr comparison();
    bool readOperator(MDPredicate::Op *op);
    bool readValue(MDPredicate::Value *value, bool mayBePresent);
    bool readQuoted(MDPredicate::Value *value);
    bool readTime(MDPredicate::Value *value);
    bool timeValue(const QString &function, const std::optional<QString> &argument,
                   MDPredicate::Value *value);
    QString word();

    void skipBlanks()
    {
        while (m_at < m_text.size() && m_text[m_at].isSpace())
            ++m_at;
    }
    bool take(QStringView token)
    {
        skipBlanks();
        if (!QStringView(m_text).mid(m_at).startsWith(token))
            return false;
        m_at += token.size();
        return true;
    }
    // Converts to "no predicate" and to "could not be read".
    struct Failure
    {
        // NOLINTBEGIN(google-explicit-constructor): that is its use
        operator MDPredicatePtr() const { return nullptr; }
        operator bool() const { return false; }
        // NOLINTEND(google-explicit-constructor)
    };
    Failure fail(const char *why)
    {
        if (!m_error)
            m_error = XPError::malformed(QString::fromLatin1(why), m_at);
        return {};
    }

    const QString &m_text;
    const double m_now; // seconds since 1970
    qsizetype m_at = 0;
    std::optional<XPError> m_error;
};

} // namespace

static bool isWord(const QString &word, QStringView expected)
{
    return word.compare(expected, Qt::CaseInsensitive) == 0;
}

static bool isWordUnit(QChar unit)
{
    return unit.isLetterOrNumber() || unit.isMark() || unit.isSurrogate() || unit == u'_' ||
           unit == u'.' || unit == u'-' || unit == u'+' || unit == u':';
}

// What a bare word counts as among numbers.
static std::optional<double> numberOf(const QString &word)
{
    if (isWord(word, u"true"))
        return 1;
    if (isWord(word, u"false"))
        return 0;
    // Not the names of what is no number, which toDouble() reads too.
    const bool digits = std::all_of(word.begin(), word.end(), [](QChar unit) {
        return (unit >= u'0' && unit <= u'9') || QStringView(u"+-.eE").contains(unit);
    });
    bool isNumber = false;
    const double number = digits ? word.toDouble(&isNumber) : 0;
    return isNumber ? std::optional(number) : std::nullopt;
}

static MDPredicatePtr combined(MDPredicate::Kind kind, std::vector<MDPredicatePtr> parts)
{
    if (parts.size() == 1)
        return parts.front();
    auto predicate = std::make_shared<MDPredicate>();
    predicate->kind = kind;
    predicate->children = std::move(parts);
    return predicate;
}

MDPredicatePtr Reader::either(int depth)
{
    std::vector<MDPredicatePtr> parts;
    do {
        parts.push_back(both(depth));
        if (!parts.back())
            return nullptr;
    } while (take(u"||"));
    return combined(MDPredicate::Kind::Or, std::move(parts));
}

MDPredicatePtr Reader::both(int depth)
{
    std::vector<MDPredicatePtr> parts;
    do {
        parts.push_back(one(depth));
        if (!parts.back())
            return nullptr;
    } while (take(u"&&"));
    return combined(MDPredicate::Kind::And, std::move(parts));
}

MDPredicatePtr Reader::one(int depth)
{
    if (depth > deepest)
        return fail("nested too deep");
    if (take(u"!")) {
        const MDPredicatePtr inner = one(depth + 1);
        if (!inner)
            return nullptr;
        auto predicate = std::make_shared<MDPredicate>();
        predicate->kind = MDPredicate::Kind::Not;
        predicate->children = {inner};
        return predicate;
    }
    if (take(u"(")) {
        MDPredicatePtr inner = either(depth + 1);
        if (inner && !take(u")"))
            return fail("a closing parenthesis is missing");
        return inner;
    }
    return comparison();
}

QString Reader::word()
{
    skipBlanks();
    const qsizetype start = m_at;
    while (m_at < m_text.size() && isWordUnit(m_text[m_at]))
        ++m_at;
    return m_text.mid(start, m_at - start);
}

MDPredicatePtr Reader::comparison()
{
    auto predicate = std::make_shared<MDPredicate>();
    predicate->attribute = take(u"*") ? QStringLiteral("*") : word();
    if (predicate->attribute.isEmpty())
        return fail("an attribute's name is missing");
    if (predicate->attribute == u"InRange" && take(u"("))
        return inRange(std::move(predicate));
    if (!readOperator(&predicate->op)) {
        const bool isTrue = isWord(predicate->attribute, u"true");
        if (!isTrue && !isWord(predicate->attribute, u"false"))
            return fail("a comparison (== != < > <= >=) is missing");
        predicate->kind = isTrue ? MDPredicate::Kind::True : MDPredicate::Kind::False;
        return predicate;
    }
    predicate->kind = MDPredicate::Kind::Compare;
    const bool equality =
        predicate->op == MDPredicate::Op::Equal || predicate->op == MDPredicate::Op::NotEqual;
    return readValue(&predicate->value, equality) ? predicate : nullptr;
}

// Behind "InRange(".
MDPredicatePtr Reader::inRange(std::shared_ptr<MDPredicate> predicate)
{
    predicate->kind = MDPredicate::Kind::InRange;
    predicate->attribute = take(u"*") ? QStringLiteral("*") : word();
    if (predicate->attribute.isEmpty())
        return fail("an attribute's name is missing");
    if (!take(u","))
        return fail("InRange needs an attribute, a low and a high value; a comma is missing");
    if (!readValue(&predicate->value, false))
        return nullptr;
    if (!take(u","))
        return fail("InRange needs an attribute, a low and a high value; a comma is missing");
    if (!readValue(&predicate->high, false))
        return nullptr;
    if (!take(u")"))
        return fail("a closing parenthesis is missing");
    return predicate;
}

bool Reader::readOperator(MDPredicate::Op *op)
{
    static const std::pair<QStringView, MDPredicate::Op> operators[] = {
        {u"==", MDPredicate::Op::Equal},       {u"!=", MDPredicate::Op::NotEqual},
        {u"<=", MDPredicate::Op::LessOrEqual}, {u">=", MDPredicate::Op::GreaterOrEqual},
        {u"<", MDPredicate::Op::Less},         {u">", MDPredicate::Op::Greater},
        {u"=", MDPredicate::Op::Equal},
    };
    for (const auto &[token, meaning] : operators) {
        if (take(token)) {
            *op = meaning;
            return true;
        }
    }
    return false;
}

bool Reader::readValue(MDPredicate::Value *value, bool mayBePresent)
{
    skipBlanks();
    if (m_at >= m_text.size())
        return fail("a value is missing");
    const QChar first = m_text[m_at];
    if (first == u'"' || first == u'\'')
        return readQuoted(value);
    if (take(u"$time"))
        return readTime(value);
    if (first == u'*') {
        if (!mayBePresent)
            return fail("* (any value) goes with == and != only");
        ++m_at;
        value->type = MDPredicate::Value::Type::Present;
        return true;
    }
    value->text = word();
    if (value->text.isEmpty())
        return fail("a value is missing");
    value->wildcard.assign(static_cast<size_t>(value->text.size()), false);
    if (const auto number = numberOf(value->text)) {
        value->number = *number;
        value->type = MDPredicate::Value::Type::Number;
    }
    return true;
}

bool Reader::readQuoted(MDPredicate::Value *value)
{
    const QChar quote = m_text[m_at++];
    value->quoted = true;
    for (;; ++m_at) {
        if (m_at >= m_text.size())
            return fail("a closing quote is missing");
        QChar unit = m_text[m_at];
        if (unit == quote)
            break;
        bool wildcard = unit == u'*' || unit == u'?';
        if (unit == u'\\' && m_at + 1 < m_text.size()) {
            unit = m_text[++m_at];
            wildcard = false;
        }
        value->text.append(unit);
        value->wildcard.push_back(wildcard);
    }
    ++m_at;
    for (; m_at < m_text.size() && m_text[m_at].isLetterOrNumber(); ++m_at) {
        switch (m_text[m_at].unicode()) {
        case 'c':
            value->ignoreCase = true;
            break;
        case 'd':
            value->ignoreDiacritics = true;
            break;
        case 'w':
            value->wordBased = true;
            break;
        default:
            return fail("unknown modifier; there are c, d and w");
        }
    }
    return true;
}

bool Reader::readTime(MDPredicate::Value *value)
{
    value->type = MDPredicate::Value::Type::Number;
    value->isDate = true;
    const qsizetype start = m_at + 1;
    if (m_at >= m_text.size() || m_text[m_at] != u'.')
        return fail("a $time function is missing, as in $time.now");
    ++m_at;
    while (m_at < m_text.size() && (m_text[m_at].isLetter() || m_text[m_at] == u'_'))
        ++m_at;
    const QString function = m_text.mid(start, m_at - start);
    static const QStringList functions =
        QStringLiteral("now,today,yesterday,this_week,this_month,this_year,iso").split(u',');
    if (!functions.contains(function)) {
        m_at = start;
        return fail("unknown $time function");
    }
    std::optional<QString> argument;
    if (take(u"(")) {
        const qsizetype close = m_text.indexOf(u')', m_at);
        if (close < 0)
            return fail("a closing parenthesis is missing");
        argument = m_text.mid(m_at, close - m_at).trimmed();
        if (argument->isEmpty())
            argument.reset();
        if (!timeValue(function, argument, value))
            return false;
        m_at = close + 1;
        return true;
    }
    return timeValue(function, argument, value);
}

// The moment at which the calendar unit that holds `now` begins, in local time.
static QDateTime startOf(const QString &unit, const QDateTime &now)
{
    const QDate today = now.date();
    if (unit == u"this_week")
        return today.addDays(1 - today.dayOfWeek()).startOfDay();
    if (unit == u"this_month")
        return QDate(today.year(), today.month(), 1).startOfDay();
    if (unit == u"this_year")
        return QDate(today.year(), 1, 1).startOfDay();
    if (unit == u"yesterday")
        return today.addDays(-1).startOfDay();
    return today.startOfDay();
}

// `units` of them further: whole ones by the calendar, a fraction as a part of the average one.
static double moved(const QDateTime &start, const QString &unit, double units)
{
    const double whole = std::floor(units);
    const double rest = units - whole;
    const auto count = static_cast<int>(std::clamp(whole, -1e6, 1e6));
    QDateTime moment = start;
    double length = secondsADay;
    if (unit == u"this_week") {
        moment = start.addDays(qint64{7} * count);
        length = 7 * secondsADay;
    } else if (unit == u"this_month") {
        moment = start.addMonths(count);
        length = 30.436875 * secondsADay;
    } else if (unit == u"this_year") {
        moment = start.addYears(count);
        length = 365.2425 * secondsADay;
    }
    // Beyond what the calendar knows every length is as good.
    if (!moment.isValid())
        return static_cast<double>(start.toMSecsSinceEpoch()) / 1000 + units * length;
    return static_cast<double>(moment.toMSecsSinceEpoch()) / 1000 + rest * length;
}

bool Reader::timeValue(const QString &function, const std::optional<QString> &argument,
                       MDPredicate::Value *value)
{
    double seconds = 0;
    if (function == u"iso") {
        QString text = argument.value_or(QString());
        text.remove(u'"');
        const QDateTime moment = QDateTime::fromString(text, Qt::ISODateWithMs);
        if (!moment.isValid())
            return fail("$time.iso needs a date such as 2024-05-31T12:00:00Z");
        seconds = static_cast<double>(moment.toMSecsSinceEpoch()) / 1000;
    } else {
        bool isNumber = true;
        const double number = argument && !argument->isEmpty() ? argument->toDouble(&isNumber) : 0;
        if (!isNumber || !std::isfinite(number))
            return fail("a $time function needs a number");
        const QDateTime now = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(m_now * 1000));
        if (function == u"now") {
            seconds = m_now + number;
        } else if (function == u"today" || function == u"yesterday") {
            // With an argument days count from this moment, as in-process date tests do.
            const double back = function == u"yesterday" ? secondsADay : 0;
            seconds = argument ? m_now - back + number * secondsADay
                               : moved(startOf(function, now), function, 0);
        } else {
            seconds = moved(startOf(function, now), function, number);
        }
    }
    value->number = PropertyValue::Date::fromSecondsSince1970(seconds).secondsSince2001;
    return true;
}

XPResult<MDPredicatePtr> MDQueryParser::parse(const QString &text, double nowSince1970)
{
    if (text.size() > longest)
        return XPError::malformed(QStringLiteral("the query is too long"), longest);
    return Reader(text, nowSince1970).readAll();
}

XPResult<MDPredicatePtr> MDQueryParser::parse(const QString &text)
{
    return parse(text, static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000);
}
