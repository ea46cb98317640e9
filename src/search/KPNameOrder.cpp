#include "KPNameOrder.h"

#include <unicode/ucol.h>

// The C locale has no collation: it would compare code units and take no number by value.
static QLocale collationLocale()
{
    const QLocale locale;
    return locale.language() == QLocale::C ? QLocale(QLocale::English) : locale;
}

QCollator kpNameCollator()
{
    QCollator collator(collationLocale());
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

KPNameKeys::KPNameKeys()
{
    UErrorCode status = U_ZERO_ERROR;
    m_collator = ::ucol_open(collationLocale().name().toLatin1().constData(), &status);
    if (U_FAILURE(status)) {
        m_collator = nullptr;
        return;
    }
    ::ucol_setAttribute(m_collator, UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
    ::ucol_setStrength(m_collator, UCOL_SECONDARY);
}

KPNameKeys::~KPNameKeys()
{
    if (m_collator)
        ::ucol_close(m_collator);
}

// Three bytes a unit, none of them zero, in the order of the units.
static void appendUnits(QByteArray &bytes, QStringView name)
{
    constexpr uint base = 0xFF;
    for (const QChar unit : name) {
        for (const uint place : {base * base, base, 1U})
            bytes.append(static_cast<char>(1 + unit.unicode() / place % base));
    }
    bytes.append('\0');
}

void KPNameKeys::append(QByteArray &bytes, QStringView name) const
{
    if (!m_collator) {
        appendUnits(bytes, name);
        return;
    }
    const qsizetype start = bytes.size();
    const auto *units = reinterpret_cast<const UChar *>(name.utf16());
    const auto length = static_cast<int32_t>(name.size());
    qsizetype room = 2 * name.size() + 16;
    for (;;) {
        bytes.resize(start + room);
        const int32_t needed = ::ucol_getSortKey(
            m_collator, units, length, reinterpret_cast<uint8_t *>(bytes.data() + start),
            static_cast<int32_t>(room)); // with the zero at its end
        if (needed > 0 && needed <= room) {
            bytes.resize(start + needed);
            return;
        }
        if (needed <= 0) {
            bytes.resize(start);
            appendUnits(bytes, name);
            return;
        }
        room = needed;
    }
}

QByteArray KPNameKeys::key(QStringView name) const
{
    QByteArray bytes;
    append(bytes, name);
    return bytes;
}
