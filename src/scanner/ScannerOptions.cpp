#include "ScannerOptions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <sane/saneopts.h>

static constexpr std::array usualResolutions{75.0,  100.0, 150.0, 200.0,
                                             300.0, 400.0, 600.0, 1200.0};

ScannerOptions::ScannerOptions(SANE_Handle handle) : m_handle(handle)
{
}

std::optional<ScannerOptions::Found> ScannerOptions::find(const char *name) const
{
    SANE_Int count = 0;
    if (sane_control_option(m_handle, 0, SANE_ACTION_GET_VALUE, &count, nullptr) !=
        SANE_STATUS_GOOD)
        return {};
    for (SANE_Int number = 1; number < count; ++number) {
        const SANE_Option_Descriptor *option = sane_get_option_descriptor(m_handle, number);
        if (option && option->name && qstrcmp(option->name, name) == 0 &&
            SANE_OPTION_IS_ACTIVE(option->cap) && SANE_OPTION_IS_SETTABLE(option->cap))
            return Found{number, option};
    }
    return {};
}

static double numberOf(const SANE_Option_Descriptor &option, SANE_Word word)
{
    return option.type == SANE_TYPE_FIXED ? SANE_UNFIX(word) : static_cast<double>(word);
}

QList<QByteArray> ScannerOptions::strings(const char *name) const
{
    QList<QByteArray> strings;
    const auto found = find(name);
    if (found && found->option->constraint_type == SANE_CONSTRAINT_STRING_LIST) {
        for (const SANE_String_Const *each = found->option->constraint.string_list; *each; ++each)
            strings.append(*each);
    }
    return strings;
}

QList<double> ScannerOptions::resolutions() const
{
    const auto found = find(SANE_NAME_SCAN_RESOLUTION);
    QList<double> values;
    if (!found)
        return values;
    const SANE_Option_Descriptor &option = *found->option;
    if (option.constraint_type == SANE_CONSTRAINT_WORD_LIST) {
        for (SANE_Word i = 1; i <= option.constraint.word_list[0]; ++i)
            values.append(numberOf(option, option.constraint.word_list[i]));
    } else if (option.constraint_type == SANE_CONSTRAINT_RANGE) {
        const double least = numberOf(option, option.constraint.range->min);
        const double most = numberOf(option, option.constraint.range->max);
        values = {least, most};
        for (const double usual : usualResolutions) {
            if (usual > least && usual < most)
                values.append(usual);
        }
    }
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
}

std::optional<double> ScannerOptions::largest(const char *name) const
{
    const auto found = find(name);
    if (!found || found->option->unit != SANE_UNIT_MM)
        return {};
    const SANE_Option_Descriptor &option = *found->option;
    if (option.constraint_type == SANE_CONSTRAINT_RANGE)
        return numberOf(option, option.constraint.range->max);
    if (option.constraint_type == SANE_CONSTRAINT_WORD_LIST && option.constraint.word_list[0] > 0)
        return numberOf(option, *std::max_element(option.constraint.word_list + 1,
                                                  option.constraint.word_list + 1 +
                                                      option.constraint.word_list[0]));
    return {};
}

bool ScannerOptions::apply(const Found &found, void *value)
{
    return sane_control_option(m_handle, found.number, SANE_ACTION_SET_VALUE, value, nullptr) ==
           SANE_STATUS_GOOD;
}

bool ScannerOptions::set(const char *name, const QByteArray &value)
{
    const auto found = find(name);
    if (!found || found->option->type != SANE_TYPE_STRING || value.size() >= found->option->size)
        return false;
    QByteArray room(found->option->size, '\0'); // the scanner may write back as much
    std::copy(value.begin(), value.end(), room.begin());
    return apply(*found, room.data());
}

bool ScannerOptions::set(const char *name, double value)
{
    const auto found = find(name);
    if (!found)
        return false;
    const SANE_Option_Descriptor &option = *found->option;
    if (option.size != static_cast<SANE_Int>(sizeof(SANE_Word)))
        return false; // a list of numbers
    if (option.constraint_type == SANE_CONSTRAINT_RANGE)
        value = std::clamp(value, numberOf(option, option.constraint.range->min),
                           numberOf(option, option.constraint.range->max));
    SANE_Word word = 0;
    if (option.type == SANE_TYPE_FIXED)
        word = SANE_FIX(value);
    else if (option.type == SANE_TYPE_INT || option.type == SANE_TYPE_BOOL)
        word = static_cast<SANE_Word>(std::lround(value));
    else
        return false;
    return apply(*found, &word);
}

// --- Units

static int typeOfSource(const QByteArray &source)
{
    const QByteArray name = source.toLower();
    if (name.contains("adf") || name.contains("feeder") || name.contains("duplex"))
        return 3;
    if (name.contains("negative"))
        return 2;
    if (name.contains("transparen") || name.contains("tpu") || name.contains("positive") ||
        name.contains("slide"))
        return 1;
    return 0;
}

QJsonArray scannerUnits(SANE_Handle handle)
{
    ScannerOptions options(handle);
    QList<QByteArray> sources = options.strings(SANE_NAME_SCAN_SOURCE);
    if (sources.isEmpty())
        sources.append(QByteArray());
    std::map<int, QJsonObject> units;
    for (const QByteArray &source : sources) {
        const int type = typeOfSource(source);
        const QString name = QString::fromUtf8(source);
        const bool isDuplex = source.toLower().contains("duplex");
        QJsonObject &unit = units[type];
        if (isDuplex)
            unit.insert(QStringLiteral("duplexSource"), name);
        if (unit.contains(QStringLiteral("source")) || (isDuplex && sources.size() > 1))
            continue;
        // What can be set depends on the source.
        if (!source.isEmpty())
            (void)options.set(SANE_NAME_SCAN_SOURCE, source);
        QJsonArray resolutions;
        for (const double resolution : options.resolutions())
            resolutions.append(resolution);
        unit.insert(QStringLiteral("type"), type);
        unit.insert(QStringLiteral("source"), name);
        unit.insert(QStringLiteral("resolutions"), resolutions);
        unit.insert(QStringLiteral("width"), options.largest(SANE_NAME_SCAN_BR_X).value_or(0));
        unit.insert(QStringLiteral("height"), options.largest(SANE_NAME_SCAN_BR_Y).value_or(0));
    }
    QJsonArray all;
    for (const auto &[type, unit] : units) {
        if (unit.contains(QStringLiteral("source")))
            all.append(unit);
    }
    return all;
}
