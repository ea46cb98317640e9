#include "MDQueryParser.h"

#include "PropertyValue.h"

#include <QDateTime>
#include <QTimeZone>
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
    MDPredicatePtr inRange(bool negated);
    MDPredicatePtr comparison();
    bool readOperator(MDPredicate::Op *op);
    bool readValue(MDPredicate::Value *value);
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
        operator MDPredicatePtr() const
        {
            return nullptr;
        } // NOLINT(google-explicit-constructor): that is its use
        operator bool() const { return false; } // NOLINT(google-explicit-constructor): as above
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

static bool isWordUnit(QChar unit)
{
    return unit.isLetterOrNumber() || unit.isMark() || unit.isSurrogate() || unit == u'_' ||
           unit == u'.' || unit == u'-' || unit == u'+' || unit == u':';
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
        const MDPredicatePtr inner = either(depth + 1);
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
    const qsizetype start = m_at;
    auto predicate = std::make_shared<MDPredicate>();
    predicate->kind = MDPredicate::Kind::Compare;
    predicate->attribute = take(u"*") ? QStringLiteral("*") : word();
    if (predicate->attribute.isEmpty())
        return fail("an attribute's name is missing");
    if (predicate->attribute == u"InRange" && take(u"(")) {
        predicate->kind = MDPredicate::Kind::InRange;
        predicate->attribute = take(u"*") ? QStringLiteral("*") : word();
        const bool complete = !predicate->attribute.isEmpty() && take(u",") &&
                              readValue(&predicate->value) && take(u",") &&
                              readValue(&predicate->high) && take(u")");
        if (!complete)
            return fail("InRange needs an attribute, a low and a high value");
        return predicate;
    }
    if (!readOperator(&predicate->op)) {
        const bool isTrue = predicate->attribute.compare(u"true", Qt::CaseInsensitive) == 0;
        const bool isFalse = predicate->attribute.compare(u"false", Qt::CaseInsensitive) == 0;
        if (!isTrue && !isFalse) {
            m_at = std::max(m_at, start);
            return fail("a comparison (== != < > <= >=) is missing");
        }
        predicate->kind = isTrue ? MDPredicate::Kind::True : MDPredicate::Kind::False;
        return predicate;
    }
    return readValue(&predicate->value) ? predicate : nullptr;
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

bool Reader::readValue(MDPredicate::Value *value)
{
    skipBlanks();
    if (m_at >= m_text.size())
        return fail("a value is missing");
    const QChar first = m_text[m_at];
    if (first == u'"' || first == u'\'')
        return readQuoted(value);
    if (take(u"$time"))
        return readTime(value);
    if (take(u"*")) {
        value->type = MDPredicate::Value::Type::Present;
        return true;
    }
    value->text = word();
    if (value->text.isEmpty())
        return fail("a value is missing");
    bool isNumber = false;
    value->number = value->text.toDouble(&isNumber);
    value->type = isNumber ? MDPredicate::Value::Type::Number : MDPredicate::Value::Type::Text;
    value->wildcard.assign(static_cast<size_t>(value->text.size()), false);
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
    if (!take(u"."))
        return timeValue(QStringLiteral("now"), {}, value);
    const qsizetype start = m_at;
    while (m_at < m_text.size() && (m_text[m_at].isLetter() || m_text[m_at] == u'_'))
        ++m_at;
    const QString function = m_text.mid(start, m_at - start);
    std::optional<QString> argument;
    if (take(u"(")) {
        const qsizetype close = m_text.indexOf(u')', m_at);
        if (close < 0)
            return fail("a closing parenthesis is missing");
        argument = m_text.mid(m_at, close - m_at).trimmed();
        m_at = close + 1;
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
    return static_cast<double>(moment.toMSecsSinceEpoch()) / 1000 + rest * length;
}

bool Reader::timeValue(const QString &function, const std::optional<QString> &argument,
                       MDPredicate::Value *value)
{
    double seconds = m_now;
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
        } else if (function == u"this_week" || function == u"this_month" ||
                   function == u"this_year") {
            seconds = moved(startOf(function, now), function, number);
        } else {
            return fail("unknown $time function");
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
