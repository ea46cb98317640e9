#pragma once

#include "KPCommand.h"
#include "XPError.h"

#include <QHash>
#include <QStringList>

// The words of one command, sorted into options and operands.
//
// Works on texts as XPPath decodes them, as a file name among the words is bytes. Options may
// stand anywhere before "--", a value follows as the next word or after "="; "--help" belongs to
// every command. Threads: a value.
class KPCommandLine
{
public:
    static XPResult<KPCommandLine> parse(const QStringList &words, const KPCommand &command);

    bool has(const char *option) const { return m_values.contains(QLatin1String(option)); }
    // In the order given; a flag has an empty one for each time.
    QStringList values(const char *option) const { return m_values.value(QLatin1String(option)); }
    const QStringList &operands() const { return m_operands; }

    // The values as tags: cut at commas, tabs and line ends and cleaned, as the window does with
    // typed tags. Fails on a value that holds nothing then.
    XPResult<QStringList> tags(const char *option) const;
    // Those of one value.
    static QStringList tagsIn(const QString &value);
    // Fails when more than one of these options is there.
    std::optional<XPError> onlyOneOf(const std::vector<const char *> &options) const;

    // A number of stars from 0 to 5, "." before the fraction, whatever the locale.
    static XPResult<double> stars(const QString &text);

private:
    QHash<QString, QStringList> m_values;
    QStringList m_operands;
};

// A mistake in the words: exit status 2.
XPError kpUsageError(const QString &message);
