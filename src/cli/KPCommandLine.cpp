#include "KPCommandLine.h"

#include "KPTagName.h"
#include "XPPath.h"

#include <QRegularExpression>
#include <algorithm>

XPError kpUsageError(const QString &message)
{
    return XPError::make(XPError::Kind::InvalidArgument, message);
}

static const KPCommandOption *findOption(const KPCommand &command, const QString &name)
{
    static constexpr KPCommandOption help = {"--help", nullptr, ""};
    if (name == QLatin1String(help.name))
        return &help;
    const auto it = std::find_if(
        command.options.begin(), command.options.end(),
        [&](const KPCommandOption &option) { return name == QLatin1String(option.name); });
    return it == command.options.end() ? nullptr : &*it;
}

XPResult<KPCommandLine> KPCommandLine::parse(const QStringList &words, const KPCommand &command)
{
    KPCommandLine line;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString &word = words[i];
        if (word == u"--") {
            line.m_operands += words.mid(i + 1);
            break;
        }
        if (!word.startsWith(u'-') || word == u"-") {
            line.m_operands.append(word);
            continue;
        }
        const qsizetype equals = word.indexOf(u'=');
        const QString name = word.left(equals);
        const KPCommandOption *option = findOption(command, name);
        if (!option)
            return kpUsageError(QStringLiteral("unknown option %1").arg(XPPath::printable(name)));
        if (!option->value && equals >= 0)
            return kpUsageError(QStringLiteral("%1 takes no value").arg(name));
        if (option->value && equals < 0 && i + 1 == words.size())
            return kpUsageError(QStringLiteral("%1 needs a value").arg(name));
        QString value = equals >= 0 ? word.mid(equals + 1) : QString();
        if (option->value && equals < 0)
            value = words[++i];
        line.m_values[name].append(value);
    }
    return line;
}

QStringList KPCommandLine::tagsIn(const QString &value)
{
    QStringList tags;
    for (const QString &piece : KPTagName::cleanUpTagStringArray({value})) {
        if (const QString tag = KPTagName::CleanAndTrimTag(piece); !tag.trimmed().isEmpty())
            tags.append(tag);
    }
    return tags;
}

XPResult<QStringList> KPCommandLine::tags(const char *option) const
{
    QStringList tags;
    for (const QString &value : values(option)) {
        const QStringList found = tagsIn(value);
        if (found.isEmpty())
            return kpUsageError(
                QStringLiteral("%1 needs a tag that is not empty").arg(QLatin1String(option)));
        if (!value.isValidUtf16())
            return kpUsageError(
                QStringLiteral("a tag that is not UTF-8: %1").arg(XPPath::printable(value)));
        tags += found;
    }
    return tags;
}

std::optional<XPError> KPCommandLine::onlyOneOf(const std::vector<const char *> &options) const
{
    QStringList given;
    for (const char *option : options) {
        if (has(option))
            given.append(QLatin1String(option));
    }
    if (given.size() < 2)
        return {};
    return kpUsageError(QStringLiteral("%1 and %2 exclude each other").arg(given[0], given[1]));
}

XPResult<double> KPCommandLine::stars(const QString &text)
{
    static const QRegularExpression decimal(QStringLiteral("\\A[0-9]+(\\.[0-9]+)?\\z"));
    const double stars = text.toDouble();
    if (!decimal.match(text).hasMatch() || stars > 5)
        return kpUsageError(QStringLiteral("a rating is a number from 0 to 5, not \"%1\"")
                                .arg(XPPath::printable(text)));
    return stars;
}
