#include "HtmlText.h"

#include "DocumentFacts.h"
#include "FlowText.h"
#include "TextDecoding.h"

#include <QHash>
#include <algorithm>
#include <cstdlib>
#include <gumbo.h>
#include <memory>
#include <new>
#include <vector>

// --- Encoding

// The value of the first "charset=" among the first bytes. WHATWG HTML, 13.2.3.2.
static QByteArray statedEncoding(QByteArrayView page)
{
    const QByteArray head =
        page.first(std::min<qsizetype>(page.size(), 2048)).toByteArray().toLower();
    qsizetype at = head.indexOf("charset=");
    if (at < 0)
        return {};
    at += 8;
    while (at < head.size() && (head[at] == '"' || head[at] == '\'' || head[at] == ' '))
        ++at;
    const auto end = std::find_if(head.begin() + at, head.end(), [](char c) {
        return c == '"' || c == '\'' || c == ';' || c == '>' || c == ' ' || c == '/';
    });
    return QByteArray(head.begin() + at, end - (head.begin() + at));
}

QByteArray HtmlText::asUtf8(QByteArrayView page)
{
    page = page.first(std::min(page.size(), longest));
    const QByteArray stated = statedEncoding(page);
    if ((stated.isEmpty() || stated == "utf-8") && page.isValidUtf8())
        return page.toByteArray();
    return TextDecoding::decode(page, stated).toUtf8();
}

// --- Depth

namespace {

// Elements that never hold their like: an open one ends where the next begins.
bool isClosedByNext(QByteArrayView name)
{
    static constexpr const char *names[] = {
        "p",     "br",     "hr",    "img",   "input", "meta",   "li",   "dt",   "dd",
        "td",    "th",     "tr",    "link",  "base",  "option", "area", "col",  "wbr",
        "embed", "source", "track", "param", "thead", "tbody",  "html", "body", "head"};
    return std::any_of(std::begin(names), std::end(names),
                       [name](const char *other) { return name == other; });
}

// How much of a page can be parsed: to where more elements are open than browsers nest. Parsing
// takes time in the square of the depth, and a page may be nothing but opening tags.
qsizetype parsableBytes(QByteArrayView page)
{
    constexpr int deepest = 512;
    QHash<QByteArray, int> open;
    int depth = 0;
    for (qsizetype at = page.indexOf('<'); at >= 0; at = page.indexOf('<', at + 1)) {
        const bool isEnd = at + 1 < page.size() && page[at + 1] == '/';
        qsizetype end = at + 1 + isEnd;
        QByteArray name;
        for (; end < page.size() && end - at < 40; ++end) {
            const char c = static_cast<char>(page[end] | 0x20);
            if (!(c >= 'a' && c <= 'z') && !(page[end] >= '0' && page[end] <= '9'))
                break;
            name.append(page[end] >= '0' && page[end] <= '9' ? page[end] : c);
        }
        if (name.isEmpty() || isClosedByNext(name))
            continue;
        int &count = open[name];
        if (isEnd && count > 0) {
            --count;
            --depth;
        } else if (!isEnd) {
            ++count;
            if (++depth > deepest)
                return at;
        }
    }
    return page.size();
}

// --- Parsing

// All memory of one parse, given back at once: the library's own way walks the tree by recursion.
class Arena
{
public:
    Arena() = default;
    Arena(const Arena &) = delete;
    Arena &operator=(const Arena &) = delete;
    ~Arena()
    {
        for (void *block : m_blocks)
            std::free(block);
    }
    void *allocate(size_t size)
    {
        size = (size + alignof(std::max_align_t) - 1) & ~(alignof(std::max_align_t) - 1);
        if (size > m_left) {
            const size_t block = std::max<size_t>(size, 256 << 10);
            m_next = static_cast<char *>(std::malloc(block));
            if (!m_next)
                throw std::bad_alloc();
            m_blocks.push_back(m_next);
            m_left = block;
        }
        m_left -= size;
        return std::exchange(m_next, m_next + size);
    }

private:
    std::vector<void *> m_blocks;
    char *m_next = nullptr;
    size_t m_left = 0;
};

enum class Layout { Inline, Line, Paragraph, Cell, Hidden };

Layout layoutOf(GumboTag tag)
{
    switch (tag) {
    case GUMBO_TAG_SCRIPT:
    case GUMBO_TAG_STYLE:
    case GUMBO_TAG_TEMPLATE:
    case GUMBO_TAG_HEAD:
    case GUMBO_TAG_IFRAME:
    case GUMBO_TAG_OBJECT:
        return Layout::Hidden;
    case GUMBO_TAG_TD:
    case GUMBO_TAG_TH:
        return Layout::Cell;
    case GUMBO_TAG_P:
    case GUMBO_TAG_H1:
    case GUMBO_TAG_H2:
    case GUMBO_TAG_H3:
    case GUMBO_TAG_H4:
    case GUMBO_TAG_H5:
    case GUMBO_TAG_H6:
    case GUMBO_TAG_BLOCKQUOTE:
    case GUMBO_TAG_TABLE:
    case GUMBO_TAG_UL:
    case GUMBO_TAG_OL:
    case GUMBO_TAG_PRE:
    case GUMBO_TAG_SECTION:
    case GUMBO_TAG_ARTICLE:
        return Layout::Paragraph;
    case GUMBO_TAG_DIV:
    case GUMBO_TAG_LI:
    case GUMBO_TAG_TR:
    case GUMBO_TAG_BR:
    case GUMBO_TAG_DT:
    case GUMBO_TAG_DD:
    case GUMBO_TAG_HR:
    case GUMBO_TAG_OPTION:
    case GUMBO_TAG_FIGCAPTION:
    case GUMBO_TAG_HEADER:
    case GUMBO_TAG_FOOTER:
    case GUMBO_TAG_NAV:
        return Layout::Line;
    default:
        return Layout::Inline;
    }
}

void separate(FlowText &flow, Layout layout, bool isEnd)
{
    if (layout == Layout::Line)
        flow.endLine();
    else if (layout == Layout::Paragraph)
        flow.endParagraph();
    else if (layout == Layout::Cell && isEnd)
        flow.endCell();
}

QByteArrayView attributeOf(const GumboElement &element, const char *name)
{
    const GumboAttribute *attribute = gumbo_get_attribute(&element.attributes, name);
    return attribute ? QByteArrayView(attribute->value) : QByteArrayView();
}

// The text nodes of an element, without what is below its children.
QByteArray ownText(const GumboElement &element)
{
    QByteArray text;
    for (unsigned i = 0; i < element.children.length; ++i) {
        const auto *child = static_cast<const GumboNode *>(element.children.data[i]);
        if (child->type == GUMBO_NODE_TEXT || child->type == GUMBO_NODE_WHITESPACE)
            text += child->v.text.text;
    }
    return text;
}

void readMeta(const GumboElement &element, DocumentFacts &facts)
{
    const QByteArray name = attributeOf(element, "name").toByteArray().toLower();
    const QString content = QString::fromUtf8(attributeOf(element, "content"));
    if (name == "author" || name == "dc.creator")
        facts.addText(DocumentFacts::authors, content);
    else if (name == "keywords")
        facts.addList(DocumentFacts::keywords, content);
    else if (name == "description" || name == "dc.description")
        facts.setText(DocumentFacts::description, content);
    else if (name == "generator")
        facts.setText(DocumentFacts::creator, content);
    else if (name == "dc.title")
        facts.setTitle(content);
    else if (name == "date" || name == "dc.date" || name == "dcterms.created")
        facts.setIsoDate(DocumentFacts::created, content);
}

void enterElement(const GumboElement &element, FlowText &flow, DocumentFacts *facts)
{
    if (facts && element.tag == GUMBO_TAG_TITLE && element.tag_namespace == GUMBO_NAMESPACE_HTML)
        facts->setTitle(QString::fromUtf8(ownText(element)));
    else if (facts && element.tag == GUMBO_TAG_META)
        readMeta(element, *facts);
    else if (facts && element.tag == GUMBO_TAG_HTML)
        facts->addText(DocumentFacts::languages, QString::fromUtf8(attributeOf(element, "lang")));
    else if (element.tag == GUMBO_TAG_IMG)
        flow.appendCollapsed(attributeOf(element, "alt"));
    separate(flow, layoutOf(element.tag), false);
}

bool isElement(const GumboNode &node)
{
    return node.type == GUMBO_NODE_ELEMENT || node.type == GUMBO_NODE_TEMPLATE;
}

// In the document's order, without recursion.
void walk(const GumboNode *root, FlowText &flow, DocumentFacts *facts)
{
    struct Place
    {
        const GumboNode *node;
        unsigned next; // the child that comes next
        bool isHidden;
    };
    std::vector<Place> places = {{root, 0, false}};
    enterElement(root->v.element, flow, facts);
    while (!places.empty() && !flow.isFull()) {
        Place &place = places.back();
        const GumboElement &element = place.node->v.element;
        if (place.next == element.children.length) {
            separate(flow, layoutOf(element.tag), true);
            places.pop_back();
            continue;
        }
        const auto *child = static_cast<const GumboNode *>(element.children.data[place.next++]);
        if (isElement(*child)) {
            const bool isHidden =
                place.isHidden || layoutOf(child->v.element.tag) == Layout::Hidden;
            enterElement(child->v.element, flow, facts);
            places.push_back({child, 0, isHidden});
        } else if (!place.isHidden && child->type != GUMBO_NODE_COMMENT) {
            flow.appendCollapsed(QByteArrayView(child->v.text.text));
        }
    }
}

} // namespace

void HtmlText::read(QByteArrayView utf8, FlowText &flow, DocumentFacts *facts)
{
    Arena arena;
    GumboOptions options = kGumboDefaultOptions;
    options.allocator = [](void *data, size_t size) {
        return static_cast<Arena *>(data)->allocate(size);
    };
    options.deallocator = [](void *, void *) {};
    options.userdata = &arena;
    options.max_errors = 0;
    const QByteArrayView parsable =
        utf8.first(parsableBytes(utf8.first(std::min(utf8.size(), longest))));
    const GumboOutput *page =
        gumbo_parse_with_options(&options, parsable.data(), static_cast<size_t>(parsable.size()));
    walk(page->root, flow, facts);
}

QByteArray HtmlText::plain(QByteArrayView utf8)
{
    DocumentText text(64 << 10);
    FlowText flow(text);
    read(utf8, flow, nullptr);
    return text.utf8();
}
