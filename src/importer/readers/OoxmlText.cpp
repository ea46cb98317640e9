#include "OoxmlText.h"

#include "FlowText.h"

#include <algorithm>

// --- OoxmlText

void OoxmlText::startElement(QByteArrayView name, const Attributes &)
{
    m_isInText = name == "t";
    m_cells += name == "tc";
    if (name == "tab")
        m_flow.addGap();
    else if (name == "br" || name == "cr")
        m_flow.endLine();
}

void OoxmlText::endElement(QByteArrayView name)
{
    m_isInText = false;
    if (name == "tc") {
        --m_cells;
        m_flow.endCell();
    } else if (name == "p" || name == "comment") {
        m_cells > 0 ? m_flow.addGap() : m_flow.endLine();
    } else if (name == "tr") {
        m_flow.endLine();
    } else if (name == "tbl" || name == "sp") { // a table, a frame of a slide
        m_flow.endParagraph();
    }
}

void OoxmlText::characters(QByteArrayView text)
{
    if (m_isInText)
        m_flow.append(text);
}

bool OoxmlText::isDone() const
{
    return m_flow.isFull();
}

// --- OoxmlStrings

void OoxmlStrings::startElement(QByteArrayView name, const Attributes &)
{
    m_isInReading = m_isInReading || name == "rPh";
    m_isInText = name == "t" && !m_isInReading;
}

void OoxmlStrings::endElement(QByteArrayView name)
{
    m_isInText = false;
    if (name == "rPh")
        m_isInReading = false;
    else if (name == "si")
        m_texts.append(std::exchange(m_text, {}));
}

void OoxmlStrings::characters(QByteArrayView text)
{
    if (m_isInText)
        m_text.append(text);
}

// --- OoxmlSheet

// The column of a cell like "AB12", from 0; cells that are empty are not there at all.
static int columnOf(QByteArrayView cell)
{
    constexpr int last = 16'383;
    int column = 0;
    for (const char c : cell) {
        if (c < 'A' || c > 'Z')
            break;
        column = std::min(column * 26 + (c - 'A' + 1), last);
    }
    return column - 1;
}

void OoxmlSheet::startElement(QByteArrayView name, const Attributes &attributes)
{
    m_isInValue = name == "v" || name == "t"; // "t": a text that stands in the cell itself
    if (name == "c") {
        m_isShared = attributes.value("t") == "s";
        m_text.clear();
        const int column = columnOf(attributes.value("r"));
        for (; m_column < column; ++m_column)
            m_flow.endCell();
    }
}

void OoxmlSheet::endElement(QByteArrayView name)
{
    m_isInValue = false;
    if (name == "row") {
        m_column = 0;
        return m_flow.endLine();
    }
    if (name != "c")
        return;
    if (m_isShared)
        m_flow.append(QByteArrayView(m_strings.value(m_text.toLongLong())));
    else
        m_flow.append(QByteArrayView(m_text));
    m_flow.endCell();
    ++m_column;
}

void OoxmlSheet::characters(QByteArrayView text)
{
    if (m_isInValue)
        m_text.append(text);
}

bool OoxmlSheet::isDone() const
{
    return m_flow.isFull();
}

// --- OoxmlSlideOrder

void OoxmlSlideOrder::startElement(QByteArrayView name, const Attributes &attributes)
{
    if (name == "sldId")
        m_relations.append(attributes.prefixed("id").toByteArray());
}
