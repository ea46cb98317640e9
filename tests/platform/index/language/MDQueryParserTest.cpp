#include "MDQueryParser.h"
#include "PropertyValue.h"

#include <QDateTime>
#include <cmath>
#include <gtest/gtest.h>

using Kind = MDPredicate::Kind;

static std::string dump(const MDPredicate::Value &value)
{
    if (value.type == MDPredicate::Value::Type::Present)
        return "present";
    const std::string number = QByteArray::number(value.number, 'g', 12).toStdString();
    if (value.isDate)
        return "date " + number;
    QString quoted;
    for (qsizetype i = 0; i < value.text.size(); ++i) {
        const bool wildcard = value.wildcard.at(static_cast<size_t>(i));
        if (!wildcard && (value.text[i] == u'*' || value.text[i] == u'?'))
            quoted += u'\\';
        quoted += value.text[i];
    }
    std::string text = '\'' + quoted.toStdString() + '\'';
    text += value.ignoreCase ? "c" : "";
    text += value.ignoreDiacritics ? "d" : "";
    text += value.wordBased ? "w" : "";
    return value.type == MDPredicate::Value::Type::Number ? number + text : text;
}

// The tree on one line: and(a ==x, not(b present)).
static std::string dump(const MDPredicate &predicate)
{
    static const char *const operators[] = {"==", "!=", "<", ">", "<=", ">="};
    switch (predicate.kind) {
    case Kind::True:
        return "true";
    case Kind::False:
        return "false";
    case Kind::Compare:
        return predicate.attribute.toStdString() + operators[static_cast<int>(predicate.op)] +
               dump(predicate.value);
    case Kind::InRange:
        return dump(predicate.value) + "<=" + predicate.attribute.toStdString() +
               "<=" + dump(predicate.high);
    default:
        break;
    }
    std::string text = predicate.kind == Kind::And  ? "and("
                       : predicate.kind == Kind::Or ? "or("
                                                    : "not(";
    for (size_t i = 0; i < predicate.children.size(); ++i)
        text += (i ? ", " : "") + dump(*predicate.children[i]);
    return text + ')';
}

static XPResult<MDPredicatePtr> parse(const char *text)
{
    return MDQueryParser::parse(QString::fromUtf8(text), 1'700'000'000.25);
}

TEST(MDQueryParser, ReadsTexts)
{
    const struct
    {
        const char *text, *tree;
    } rows[] = {
        {"a == b", "a=='b'"},
        {"a = b", "a=='b'"},
        {"  a==\"b\"  ", "a=='b'"},
        {"a == 'it\\'s'cd", "a=='it's'cd"},
        {"a == \"*x?\"w", "a=='*x?'w"},
        {"a == \"\\*x\\?\\\\\\\"\"", "a=='\\*x\\?\\\"'"},
        {"a == \"\"", "a==''"},
        {"kMDItemStarRating >=3", "kMDItemStarRating>=3'3'"},
        {"a<-5&&b>1.5e3||!c<=.5", "or(and(a<-5'-5', b>1500'1.5e3'), not(c<=0.5'.5'))"},
        {"a == 1e999", "a=='1e999'"},
        {"a == nan || a == inf || a == e || a == -", "or(a=='nan', a=='inf', a=='e', a=='-')"},
        {"a == true && b == FALSE", "and(a==1'true', b==0'FALSE')"},
        {"true && !(false)", "and(true, not(false))"},
        {"true == 1", "true==1'1'"},
        {"* == \"x*\"cdw", "*=='x*'cdw"},
        {"*==\"x\"||*!=*", "or(*=='x', *!=present)"},
        {"a == *", "a==present"},
        {"((a != *))", "a!=present"},
        {"a == com.adobe.pdf", "a=='com.adobe.pdf'"},
        {"a != public.c-plus-plus_source && b != dyn.age80",
         "and(a!='public.c-plus-plus_source', b!='dyn.age80')"},
        {"a == grün", "a=='grün'"},
        {"a == 😀", "a=='😀'"},
        {"a&&b", nullptr},
        {"a == b || c == d && e == f", "or(a=='b', and(c=='d', e=='f'))"},
        {"(a == b || c == d) && e == f", "and(or(a=='b', c=='d'), e=='f')"},
        {"a == b && c == d && e == f", "and(a=='b', c=='d', e=='f')"},
        {"!!a == b", "not(not(a=='b'))"},
        {"(!((kMDItemDisplayName == \"*x*\"cd || * == \"x*\"cdw)))",
         "not(or(kMDItemDisplayName=='*x*'cd, *=='x*'cdw))"},
        {"InRange(a,1,2)", "1'1'<=a<=2'2'"},
        {" InRange ( a , \"b\"cd , c ) ", "'b'cd<=a<='c'"},
        {"InRange == 3", "InRange==3'3'"},
        {"a > $time.now", "a>date 721692800.25"},
        {"a > $time.now(-60) && a<$time.now(0.5)", "and(a>date 721692740.25, a<date 721692800.75)"},
        {"a > $time.today(-7)", "a>date 721088000.25"},
        {"a > $time.today(-2.5)", "a>date 721476800.25"},
        {"a > $time.yesterday(1)", "a>date 721692800.25"},
        {"a == $time.iso(2001-01-01T00:01:00Z)", "a==date 60"},
        {"a == $time.iso(\"2001-01-01T00:00:00.5Z\")", "a==date 0.5"},
        {"InRange(a,$time.now(-1),$time.now(1))", "date 721692799.25<=a<=date 721692801.25"},
    };
    for (const auto &row : rows) {
        const auto predicate = parse(row.text);
        if (!row.tree) {
            EXPECT_FALSE(predicate) << row.text;
            continue;
        }
        ASSERT_TRUE(predicate) << row.text << ": " << predicate.error().message.toStdString();
        EXPECT_EQ(dump(**predicate), row.tree) << row.text;
    }
}

TEST(MDQueryParser, SaysWhereATextIsWrong)
{
    const struct
    {
        const char *text;
        int offset;
        const char *message;
    } rows[] = {
        {"", 0, "attribute"},
        {"   ", 3, "attribute"},
        {"()", 1, "attribute"},
        {"a", 1, "comparison"},
        {"a b", 2, "comparison"},
        {"a == ", 5, "value"},
        {"a == )", 5, "value"},
        {"a == b)", 6, "left over"},
        {"(a == b", 7, "parenthesis"},
        {"(a == b || )", 11, "attribute"},
        {"a == b &&", 9, "attribute"},
        {"a == b & c == d", 7, "left over"},
        {"a == \"b", 7, "quote"},
        {"a == \"b\\\"", 9, "quote"},
        {"a == \"b\"cx", 9, "modifier"},
        {"a == \"b\"C", 8, "modifier"},
        {"a == \"b\" cd", 9, "left over"},
        {"a == b*", 6, "left over"},
        {"a < *", 4, "=="},
        {"\"a\" == b", 0, "attribute"},
        {"InRange(a, 1)", 12, "comma"},
        {"InRange(a, 1, 2", 15, "parenthesis"},
        {"InRange(a, *, 2)", 11, "=="},
        {"InRange(, 1, 2)", 8, "attribute"},
        {"a > $time", 9, "$time"},
        {"a > $times.now", 9, "$time"},
        {"a > $time.soon", 10, "$time"},
        {"a > $time.today(x)", 16, "number"},
        {"a > $time.today(1e999)", 16, "number"},
        {"a > $time.today(1", 16, "parenthesis"},
        {"a > $time.iso(yesterday)", 14, "date"},
        {"ä == 😀 😀", 8, "left over"},
    };
    for (const auto &row : rows) {
        const auto predicate = parse(row.text);
        ASSERT_FALSE(predicate) << row.text;
        EXPECT_EQ(predicate.error().kind, XPError::Kind::Malformed) << row.text;
        EXPECT_EQ(predicate.error().offset, row.offset) << row.text;
        EXPECT_TRUE(predicate.error().message.contains(QString::fromUtf8(row.message)))
            << row.text << ": " << predicate.error().message.toStdString();
    }
}

TEST(MDQueryParser, ReadsCalendarUnits)
{
    const QDateTime now(QDate(2024, 5, 31), QTime(13, 30)); // a Friday
    const auto at = [&](const char *time) {
        const auto predicate =
            MDQueryParser::parse(QStringLiteral("a > $time.") + QString::fromUtf8(time),
                                 static_cast<double>(now.toSecsSinceEpoch()));
        EXPECT_TRUE(predicate) << time;
        const double seconds = predicate ? (*predicate)->value.number : std::nan("");
        return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(std::floor(seconds)) + 978307200);
    };
    const struct
    {
        const char *time = "";
        QDate day;
        QTime clock;
    } rows[] = {
        {"today", {2024, 5, 31}, {0, 0}},
        {"today()", {2024, 5, 31}, {0, 0}},
        {"today(-1)", {2024, 5, 30}, {13, 30}},
        {"yesterday", {2024, 5, 30}, {0, 0}},
        {"yesterday(-1)", {2024, 5, 29}, {13, 30}},
        {"this_week", {2024, 5, 27}, {0, 0}},
        {"this_week(-1)", {2024, 5, 20}, {0, 0}},
        {"this_month", {2024, 5, 1}, {0, 0}},
        {"this_month(-3)", {2024, 2, 1}, {0, 0}},
        {"this_year(1)", {2025, 1, 1}, {0, 0}},
        {"this_year(-0.5)", {2023, 7, 2}, {14, 54}},
        {"iso(2024-02-29)", {2024, 2, 29}, {0, 0}},
    };
    for (const auto &row : rows) {
        const QDateTime expected(row.day, row.clock);
        EXPECT_LT(std::abs(at(row.time).secsTo(expected)), 3700) // a clock change at most
            << row.time << at(row.time).toString().toStdString();
        if (row.clock == QTime(0, 0)) {
            EXPECT_EQ(at(row.time), expected) << row.time;
        }
    }
    for (const char *far : {"this_year(1e300)", "this_month(-1e9)", "today(1e300)", "now(-1e308)"})
        EXPECT_TRUE(parse((std::string("a < $time.") + far).c_str())) << far;
}

TEST(MDQueryParser, BoundsDepthAndLength)
{
    const qsizetype many = 1'000'000;
    for (const char *part : {"(", "!", "!(", "(!", "a==b&&(", "* "}) {
        const QString text = QString::fromUtf8(part).repeated(many / qsizetype(strlen(part)));
        const auto predicate = MDQueryParser::parse(text);
        ASSERT_FALSE(predicate) << part;
        EXPECT_LE(predicate.error().offset, 3000) << part;
    }
    EXPECT_FALSE(MDQueryParser::parse(QString(many + 1, u' ')));
    EXPECT_FALSE(MDQueryParser::parse(QStringLiteral("a == \"") + QString(many - 10, u'*')));
    // As deep as may be, and as wide.
    const QString deep = QString(200, u'(') + QStringLiteral("a==b") + QString(200, u')');
    ASSERT_TRUE(MDQueryParser::parse(deep));
    EXPECT_FALSE(MDQueryParser::parse(u'(' + deep + u')'));
    const QString wide = QStringLiteral("a==b||").repeated(20'000) + QStringLiteral("a==b");
    const auto predicate = MDQueryParser::parse(wide);
    ASSERT_TRUE(predicate);
    EXPECT_EQ((*predicate)->children.size(), 20'001U);
    // Odd text in quotes is text.
    QString odd = QStringLiteral("\u200F\u202E\u0000\uFFFF e\u0301 ");
    odd += QChar(0xD800);
    odd += QChar(0xDC00);
    odd += QChar(0xDC00);
    odd += QChar(0xD800);
    odd += QString(10'000, QChar(0x65E5));
    const auto quoted =
        MDQueryParser::parse(QStringLiteral("a == \"") + odd + QStringLiteral("\"cdw"));
    ASSERT_TRUE(quoted);
    EXPECT_EQ((*quoted)->value.text, odd);
}
