#include "XmpPacket.h"

#include "DocumentFacts.h"
#include "XmlEvents.h"

namespace {

// Values stand as attributes of "rdf:Description", as text of an element, or as "rdf:li" inside
// one: then the property is the element around the list.
class XmpProperties : public XmlEvents
{
public:
    explicit XmpProperties(DocumentFacts &facts) : m_facts(facts) {}

    void startElement(QByteArrayView name, const Attributes &attributes) override
    {
        m_text.clear();
        if (name == "Description") {
            attributes.forEach([this](QByteArrayView attribute, QByteArrayView value) {
                take(xmlLocalName(attribute), value);
            });
        }
        if (m_names.size() < deepest)
            m_names.append(name.toByteArray());
    }

    void endElement(QByteArrayView name) override
    {
        if (!m_names.isEmpty())
            m_names.removeLast();
        const QByteArray text = std::exchange(m_text, {}).trimmed();
        if (text.isEmpty())
            return;
        if (name != "li")
            return take(name, text);
        if (m_names.size() >= 2)
            take(m_names.at(m_names.size() - 2), text);
    }

    void characters(QByteArrayView text) override
    {
        constexpr qsizetype longest = 16 << 10;
        m_text.append(text.first(std::min(text.size(), longest - m_text.size())));
    }

private:
    void take(QByteArrayView name, QByteArrayView value)
    {
        const QString text = QString::fromUtf8(value);
        if (name == "title")
            m_facts.setTitle(text);
        else if (name == "description")
            m_facts.setText(DocumentFacts::description, text);
        else if (name == "creator")
            m_facts.addText(DocumentFacts::authors, text);
        else if (name == "subject")
            m_facts.addText(DocumentFacts::xmpKeywords, text);
        else if (name == "rights")
            m_facts.setText(DocumentFacts::copyright, text);
        else if (name == "Headline")
            m_facts.setText(QStringLiteral("kMDItemHeadline"), text);
        else if (name == "CreatorTool")
            m_facts.setText(DocumentFacts::creator, text);
        else if (name == "DateTimeOriginal" || name == "DateCreated" || name == "CreateDate")
            m_facts.setIsoDate(DocumentFacts::created, text);
        else if (name == "City" || name == "Country")
            m_facts.setText(QStringLiteral("kMDItem") + QString::fromLatin1(name), text);
    }

    DocumentFacts &m_facts;
    QList<QByteArray> m_names; // of the elements that are open
    QByteArray m_text;
};

} // namespace

void XmpPacket::read(QByteArrayView packet, DocumentFacts &facts)
{
    // The packet's wrapper may stand around it, padding behind it.
    const qsizetype start = packet.indexOf("<rdf:RDF");
    const qsizetype end = packet.lastIndexOf("</rdf:RDF>");
    if (start < 0 || end < start)
        return;
    XmpProperties properties(facts);
    std::ignore = properties.read(packet.sliced(start, end + 10 - start));
}
