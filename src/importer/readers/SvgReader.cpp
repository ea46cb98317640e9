#include "SvgReader.h"

#include "DocumentFacts.h"
#include "FlowText.h"
#include "LibArchive.h"
#include "XmlEvents.h"

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cmath>

namespace {

class SvgText : public XmlEvents
{
public:
    SvgText(FlowText &flow, DocumentFacts &facts) : m_flow(flow), m_facts(facts) {}
    bool isDrawing() const { return m_isDrawing; }

    void startElement(QByteArrayView name, const Attributes &attributes) override
    {
        if (name == "svg" && !m_isDrawing) {
            m_isDrawing = true;
            takeSize(attributes);
        }
        m_depth += 1;
        if (m_textDepth == 0 && (name == "text" || name == "title" || name == "desc"))
            m_textDepth = m_depth;
        m_text.clear();
    }

    void endElement(QByteArrayView name) override
    {
        if (m_depth == 2 && name == "title") // the drawing's, not that of a part
            m_facts.setTitle(QString::fromUtf8(m_text));
        else if (m_depth == 2 && name == "desc")
            m_facts.setText(DocumentFacts::description, QString::fromUtf8(m_text));
        if (m_depth-- == m_textDepth) {
            m_textDepth = 0;
            m_flow.endLine();
        } else if (m_textDepth > 0) {
            m_flow.addGap();
        }
    }

    void characters(QByteArrayView text) override
    {
        if (m_textDepth == 0)
            return;
        m_flow.appendCollapsed(text);
        constexpr qsizetype longest = 8 << 10;
        m_text.append(text.first(std::min(text.size(), longest - m_text.size())));
    }

    bool isDone() const override { return m_flow.isFull(); }

private:
    static double length(QByteArrayView text)
    {
        // In pixels at 96 for an inch, as browsers take it; a percentage is none.
        static constexpr std::pair<const char *, double> units[] = {
            {"px", 1},         {"pt", 4.0 / 3},   {"pc", 16},
            {"mm", 96 / 25.4}, {"cm", 96 / 2.54}, {"in", 96}};
        QByteArray number = text.toByteArray().trimmed();
        double unit = 1;
        for (const auto &[name, size] : units) {
            if (number.endsWith(name)) {
                unit = size;
                number.chop(2);
                break;
            }
        }
        const double value = number.toDouble() * unit;
        return std::isfinite(value) && value < 1e9 ? value : 0;
    }

    void takeSize(const Attributes &attributes)
    {
        double width = length(attributes.value("width"));
        double height = length(attributes.value("height"));
        const QList<QByteArray> box =
            attributes.value("viewBox").toByteArray().simplified().replace(',', ' ').split(' ');
        if ((width <= 0 || height <= 0) && box.size() == 4) {
            width = length(box[2]);
            height = length(box[3]);
        }
        m_facts.setPixelSize(std::llround(width), std::llround(height));
    }

    FlowText &m_flow;
    DocumentFacts &m_facts;
    QByteArray m_text;
    int m_depth = 0;
    int m_textDepth = 0; // where the text began that is read; 0: none
    bool m_isDrawing = false;
};

} // namespace

static XPResult<QByteArray> drawingIn(const DocumentSource &source)
{
    constexpr qsizetype longest = 32 << 20;
    auto bytes = source.readAll(longest);
    return bytes && bytes->startsWith("\x1F\x8B") ? LibArchive::decompressed(source, longest)
                                                  : std::move(bytes);
}

std::optional<DocumentFailure> SvgReader::read(const DocumentSource &source,
                                               DocumentAnswer &answer) const
{
    const auto bytes = drawingIn(source);
    if (!bytes)
        return documentFailureOf(bytes.error());
    FlowText flow(answer.text);
    DocumentFacts facts(answer);
    SvgText text(flow, facts);
    if (const auto error = text.read(*bytes))
        return documentFailureOf(*error);
    return text.isDrawing() ? std::nullopt : std::optional(DocumentFailure::Damaged);
}

std::optional<DocumentFailure> SvgReader::picture(const DocumentSource &source, int page,
                                                  int pixels, QImage &image) const
{
    if (page > 1)
        return DocumentFailure::Unsupported;
    // Reading it first refuses what would keep the renderer busy without end: declared entities.
    DocumentAnswer unused;
    if (const auto failure = read(source, unused))
        return failure;
    const auto bytes = drawingIn(source);
    QSvgRenderer renderer;
    if (!bytes || !renderer.load(*bytes))
        return DocumentFailure::Damaged;
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    const QSize own = renderer.defaultSize().isEmpty() ? QSize(1, 1) : renderer.defaultSize();
    image = QImage(own.scaled(pixels, pixels, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)),
                   QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    return {};
}
