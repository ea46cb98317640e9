#include "PropertyListRoundTrip.h"

#include <bit>
#include <fuzzer/FuzzedDataProvider.h>

static QString text(FuzzedDataProvider &input)
{
    const std::string bytes = input.ConsumeRandomLengthString(40);
    if (input.ConsumeBool())
        return QString::fromLatin1(bytes);
    // Any code units, broken pairs among them.
    QString result;
    for (size_t i = 0; i + 1 < bytes.size(); i += 2)
        result += QChar(static_cast<uchar>(bytes[i]), static_cast<uchar>(bytes[i + 1]));
    return result;
}

static PropertyValue value(FuzzedDataProvider &input, int depth)
{
    switch (input.ConsumeIntegralInRange(0, depth < 70 ? 8 : 6)) {
    case 0:
        return PropertyValue::boolean(input.ConsumeBool());
    case 1:
        return PropertyValue::integer(input.ConsumeIntegral<qint64>());
    case 2:
        return PropertyValue::real(std::bit_cast<double>(input.ConsumeIntegral<quint64>()));
    case 3:
        return PropertyValue::Date{input.ConsumeBool()
                                       ? input.ConsumeFloatingPointInRange(-1e11, 1e11)
                                       : std::bit_cast<double>(input.ConsumeIntegral<quint64>())};
    case 4:
        return QByteArray::fromStdString(input.ConsumeRandomLengthString(40));
    case 5:
        return text(input);
    case 6:
        return {};
    case 7: {
        PropertyValue::Array array;
        while (input.remaining_bytes() > 0 && input.ConsumeBool())
            array.append(value(input, depth + 1));
        return array;
    }
    default: {
        PropertyValue::Dictionary dictionary;
        while (input.remaining_bytes() > 0 && input.ConsumeBool()) {
            const QString key = text(input);
            dictionary.insert(key, value(input, depth + 1));
        }
        return dictionary;
    }
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzedDataProvider input(data, size);
    requireRoundTrip(value(input, 0));
    return 0;
}
