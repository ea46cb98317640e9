#pragma once

#include "XmlEvents.h"

#include <QByteArray>
#include <QList>

class FlowText;

// The running text of a part of an office document: paragraphs, runs, tabulators, line breaks.
// Deleted text and field codes are no part of it.
class OoxmlText : public XmlEvents
{
public:
    explicit OoxmlText(FlowText &flow) : m_flow(flow) {}
    void startElement(QByteArrayView name, const Attributes &attributes) override;
    void endElement(QByteArrayView name) override;
    void characters(QByteArrayView text) override;
    bool isDone() const override;

private:
    FlowText &m_flow;
    bool m_isInText = false;
    int m_cells = 0; // of tables that are open around the text
};

// The table of strings that the cells of a workbook share.
class OoxmlStrings : public XmlEvents
{
public:
    const QList<QByteArray> &texts() const { return m_texts; }
    void startElement(QByteArrayView name, const Attributes &attributes) override;
    void endElement(QByteArrayView name) override;
    void characters(QByteArrayView text) override;

private:
    QList<QByteArray> m_texts;
    QByteArray m_text;
    bool m_isInText = false;
    bool m_isInReading = false; // how a word is spoken, which repeats the word
};

// The cells of a sheet, a line a row: strings, numbers as they are stored, results of formulas.
class OoxmlSheet : public XmlEvents
{
public:
    OoxmlSheet(FlowText &flow, const QList<QByteArray> &strings) : m_flow(flow), m_strings(strings)
    {
    }
    void startElement(QByteArrayView name, const Attributes &attributes) override;
    void endElement(QByteArrayView name) override;
    void characters(QByteArrayView text) override;
    bool isDone() const override;

private:
    FlowText &m_flow;
    const QList<QByteArray> &m_strings;
    QByteArray m_text;
    bool m_isInValue = false;
    bool m_isShared = false; // the value is a place in m_strings
    int m_column = 0;        // that comes next, from 0
};

// The slides of a presentation: the ids of the relations that lead to them, in their order.
class OoxmlSlideOrder : public XmlEvents
{
public:
    const QList<QByteArray> &relations() const { return m_relations; }
    void startElement(QByteArrayView name, const Attributes &attributes) override;
    void endElement(QByteArrayView) override {}
    void characters(QByteArrayView) override {}

private:
    QList<QByteArray> m_relations;
};
