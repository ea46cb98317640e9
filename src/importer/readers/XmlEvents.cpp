#include "XmlEvents.h"

#include "TextDecoding.h"

#include <algorithm>
#include <expat.h>
#include <memory>

QByteArrayView xmlLocalName(QByteArrayView name)
{
    const qsizetype colon = name.lastIndexOf(':');
    return colon < 0 ? name : name.sliced(colon + 1);
}

QByteArrayView XmlEvents::Attributes::value(QByteArrayView name) const
{
    QByteArrayView found;
    for (const char *const *at = m_list; *at; at += 2) {
        const QByteArrayView full(*at);
        if (full == name)
            return QByteArrayView(at[1]);
        if (found.isNull() && xmlLocalName(full) == name)
            found = QByteArrayView(at[1]);
    }
    return found;
}

QByteArrayView XmlEvents::Attributes::prefixed(QByteArrayView name) const
{
    for (const char *const *at = m_list; *at; at += 2) {
        const QByteArrayView full(*at);
        if (full.size() > name.size() && xmlLocalName(full) == name)
            return QByteArrayView(at[1]);
    }
    return {};
}

namespace {

struct Run
{
    XmlEvents *events = nullptr;
    XML_Parser parser = nullptr;
    int depth = 0;
    std::optional<XPError> refused;

    void refuse(XPError::Kind kind, const QString &message)
    {
        if (!refused)
            refused = XPError::make(kind, message);
        XML_StopParser(parser, XML_FALSE);
    }
};

Run &runOf(void *data)
{
    return *static_cast<Run *>(data);
}

void XMLCALL onStart(void *data, const XML_Char *name, const XML_Char **attributes)
{
    Run &run = runOf(data);
    if (++run.depth > XmlEvents::deepest)
        return run.refuse(XPError::Kind::TooLarge, QStringLiteral("elements nested too deeply"));
    run.events->startElement(xmlLocalName(QByteArrayView(name)), XmlEvents::Attributes(attributes));
}

void XMLCALL onEnd(void *data, const XML_Char *name)
{
    Run &run = runOf(data);
    --run.depth;
    run.events->endElement(xmlLocalName(QByteArrayView(name)));
}

void XMLCALL onText(void *data, const XML_Char *text, int length)
{
    runOf(data).events->characters(QByteArrayView(text, length));
}

void XMLCALL onEntity(void *data, const XML_Char *, int, const XML_Char *, int, const XML_Char *,
                      const XML_Char *, const XML_Char *, const XML_Char *)
{
    runOf(data).refuse(XPError::Kind::Unsupported, QStringLiteral("declares entities"));
}

// Encodings that expat lacks: the eight-bit ones, by a table.
int XMLCALL onEncoding(void *, const XML_Char *name, XML_Encoding *info)
{
    for (int code = 0; code < 256; ++code) {
        const char byte = static_cast<char>(code);
        const QString text = TextDecoding::decode(QByteArrayView(&byte, 1), QByteArray(name));
        info->map[code] = text.size() == 1 && text[0] != QChar::ReplacementCharacter
                              ? text[0].unicode()
                              : (code < 0x80 ? code : -1);
    }
    info->data = nullptr;
    info->convert = nullptr;
    info->release = nullptr;
    return XML_STATUS_OK;
}

} // namespace

std::optional<XPError> XmlEvents::read(QByteArrayView bytes)
{
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
        XML_ParserCreate(nullptr), &XML_ParserFree);
    if (!parser)
        return XPError::make(XPError::Kind::TooLarge, QStringLiteral("no memory"));
    Run run{this, parser.get(), 0, {}};
    XML_SetUserData(parser.get(), &run);
    XML_SetElementHandler(parser.get(), onStart, onEnd);
    XML_SetCharacterDataHandler(parser.get(), onText);
    XML_SetEntityDeclHandler(parser.get(), onEntity);
    XML_SetUnknownEncodingHandler(parser.get(), onEncoding, nullptr);
    XML_SetParamEntityParsing(parser.get(), XML_PARAM_ENTITY_PARSING_NEVER);
    constexpr qsizetype piece = 64 << 10;
    for (qsizetype at = 0; !isDone();) {
        const auto size = std::min(piece, bytes.size() - at);
        const bool isLast = at + size == bytes.size();
        if (XML_Parse(parser.get(), bytes.data() + at, static_cast<int>(size), isLast) !=
            XML_STATUS_OK) {
            if (run.refused)
                return run.refused;
            return XPError::malformed(
                QString::fromUtf8(XML_ErrorString(XML_GetErrorCode(parser.get()))),
                XML_GetCurrentByteIndex(parser.get()));
        }
        at += size;
        if (isLast)
            break;
    }
    return {};
}
