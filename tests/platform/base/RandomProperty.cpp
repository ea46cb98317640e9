#include "RandomProperty.h"

#include <limits>

PropertyValue RandomProperty::value(int depth)
{
    switch (below(depth > 0 ? 9 : 6)) {
    case 0:
        return PropertyValue::boolean(below(2) != 0);
    case 1:
        return integer();
    case 2:
        return PropertyValue::real(real());
    case 3: // whole seconds of a century on either side, which XML can hold
        return PropertyValue::Date{static_cast<double>(below(2'000'000'000)) - 1e9};
    case 4:
        return data();
    case 5:
        return text();
    default:
        return container(depth);
    }
}

QString RandomProperty::text()
{
    static const QString alphabet = QStringLiteral("ab <>&\"'\t\n\u00e9\u3042\U0001f600");
    const QList<uint> characters = alphabet.toUcs4();
    const bool ascii = below(2) != 0;
    QString result;
    for (unsigned left = below(20); left > 0; --left) {
        const unsigned any = below(ascii ? 10 : static_cast<unsigned>(characters.size()));
        const char32_t character = characters[any];
        result += QString::fromUcs4(&character, 1);
    }
    return result;
}

QByteArray RandomProperty::data()
{
    QByteArray result;
    for (unsigned left = below(20); left > 0; --left)
        result += static_cast<char>(below(256));
    return result;
}

PropertyValue RandomProperty::integer()
{
    const auto edge = static_cast<qint64>(quint64{1} << below(64));
    switch (below(4)) {
    case 0:
        return PropertyValue::integer(edge);
    case 1:
        return PropertyValue::integer(edge == std::numeric_limits<qint64>::min() ? 0 : -edge);
    case 2: // 2^63 - 1 for the smallest number there is
        return PropertyValue::integer(static_cast<qint64>(static_cast<quint64>(edge) - 1));
    default:
        return PropertyValue::integer(below(1000));
    }
}

double RandomProperty::real()
{
    static constexpr double edges[] = {0.0, -0.0, 0.1, 1e300, -5e-324, 1.0 / 3};
    return below(2) != 0 ? edges[below(std::size(edges))] : static_cast<double>(below(1000)) / 8;
}

PropertyValue RandomProperty::container(int depth)
{
    // Counts of 15 and more are written in another form, 256 objects need wider references.
    const unsigned count = below(10) == 0 ? below(300 >> (2 * (4 - depth))) : below(5);
    if (below(2) != 0) {
        PropertyValue::Array array;
        for (unsigned i = 0; i < count; ++i)
            array.append(value(depth - 1));
        return array;
    }
    PropertyValue::Dictionary dictionary;
    for (unsigned i = 0; i < count; ++i)
        dictionary.insert(text(), value(depth - 1));
    return dictionary;
}
