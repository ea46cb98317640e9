#include "XmlLeaves.h"

#include <algorithm>

QByteArray XmlLeaves::Element::value(QByteArrayView attribute) const
{
    const auto found = std::find_if(attributes.begin(), attributes.end(), [&](const auto &pair) {
        return QByteArrayView(pair.first) == attribute;
    });
    return found == attributes.end() ? QByteArray() : found->second;
}

void XmlLeaves::startElement(QByteArrayView name, const Attributes &attributes)
{
    m_text.clear();
    ++m_count;
    Element element;
    attributes.forEach([&element](QByteArrayView attribute, QByteArrayView value) {
        element.attributes.append({xmlLocalName(attribute).toByteArray(),
                                   value.first(std::min(value.size(), longestText)).toByteArray()});
    });
    if (element.attributes.isEmpty())
        return;
    element.name = name.toByteArray();
    m_elements.append(std::move(element));
}

void XmlLeaves::endElement(QByteArrayView name)
{
    const QByteArray trimmed = m_text.trimmed();
    if (!trimmed.isEmpty())
        m_texts[name.toByteArray()].append(QString::fromUtf8(trimmed));
    m_text.clear();
}

void XmlLeaves::characters(QByteArrayView text)
{
    m_text.append(text.first(std::min(text.size(), longestText - m_text.size())));
}
