#pragma once

#include "XmlEvents.h"

#include <QByteArray>
#include <QHash>
#include <QString>

// The elements of a small XML document that hold text, by their name without prefix, and the
// attributes of all: enough for lists of properties.
// Threads: a value.
class XmlLeaves : public XmlEvents
{
public:
    struct Element
    {
        QByteArray name;
        QList<std::pair<QByteArray, QByteArray>> attributes; // names without prefix

        QByteArray value(QByteArrayView attribute) const;
    };

    // The first text of that name; empty: none.
    QString text(const QByteArray &name) const { return m_texts.value(name).value(0); }
    QStringList texts(const QByteArray &name) const { return m_texts.value(name); }
    // Every element with attributes, in the document's order.
    const QList<Element> &elements() const { return m_elements; }

    void startElement(QByteArrayView name, const Attributes &attributes) override;
    void endElement(QByteArrayView name) override;
    void characters(QByteArrayView text) override;
    bool isDone() const override { return m_count > mostElements; }

private:
    static constexpr int mostElements = 50'000;
    static constexpr qsizetype longestText = 64 << 10;

    QHash<QByteArray, QStringList> m_texts;
    QList<Element> m_elements;
    QByteArray m_text;
    int m_count = 0;
};
