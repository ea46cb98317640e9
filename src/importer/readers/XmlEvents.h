#pragma once

#include "XPError.h"

#include <QByteArrayView>

// Reads an XML document as a row of events.
//
// Names come without their prefix, text as UTF-8. A document that declares entities or element
// types of its own is refused (Kind::Unsupported): that is how a small text grows to gigabytes,
// and no document of an office or a browser needs it; the name of a document type is let pass,
// nothing that it refers to is fetched. Deeper nesting than `deepest` is refused with
// Kind::TooLarge. Nothing recurses. Threads: any.
class XmlEvents
{
public:
    static constexpr int deepest = 2000;

    // The attributes of an element, valid during the call.
    class Attributes
    {
    public:
        explicit Attributes(const char *const *list) : m_list(list) {}
        // By the name after the prefix; one without a prefix comes first. Null: there is none.
        QByteArrayView value(QByteArrayView name) const;
        // Only one with a prefix ("r:id" where "id" is another attribute).
        QByteArrayView prefixed(QByteArrayView name) const;
        template <typename Visit>
        void forEach(Visit visit) const
        {
            for (const char *const *at = m_list; *at; at += 2)
                visit(QByteArrayView(at[0]), QByteArrayView(at[1]));
        }

    private:
        const char *const *m_list;
    };

    virtual ~XmlEvents() = default;
    virtual void startElement(QByteArrayView name, const Attributes &attributes) = 0;
    virtual void endElement(QByteArrayView name) = 0;
    virtual void characters(QByteArrayView text) = 0;
    // Asked after each piece of input: no more is wanted, which is no failure.
    virtual bool isDone() const { return false; }

    // What was said before an error stands: a document cut short has been reported to the cut.
    std::optional<XPError> read(QByteArrayView bytes);
};

// The name without its prefix.
QByteArrayView xmlLocalName(QByteArrayView name);
