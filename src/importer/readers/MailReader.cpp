#include "MailReader.h"

#include "DocumentFacts.h"
#include "FlowText.h"
#include "HtmlText.h"
#include "TextDecoding.h"

#include <QDateTime>
#include <algorithm>
#include <gmime/gmime.h>
#include <memory>

// GLib's headers say "signals" and cast without a word; nothing of it leaks into other files.

namespace {

struct Unref
{
    void operator()(void *object) const { g_object_unref(object); }
};
template <typename Object>
using Held = std::unique_ptr<Object, Unref>;

// Where the message begins and ends in its file.
struct Bounds
{
    qint64 start = 0;
    qint64 end = -1; // -1: the file's
};

Bounds boundsOf(const DocumentSource &source)
{
    const QByteArray head = source.read(0, 1024).valueOr({});
    const qsizetype lineEnd = head.indexOf('\n');
    if (lineEnd < 0)
        return {};
    const QByteArrayView line = QByteArrayView(head).first(lineEnd).trimmed();
    if (line.startsWith("From "))
        return {lineEnd + 1, -1};
    const bool isLength =
        !line.isEmpty() && line.size() < 12 &&
        std::all_of(line.begin(), line.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!isLength)
        return {};
    return {lineEnd + 1, std::min<qint64>(lineEnd + 1 + line.toLongLong(), source.size())};
}

QByteArrayView rawHeader(GMimeObject *object, const char *name)
{
    GMimeHeader *header =
        g_mime_header_list_get_header(g_mime_object_get_header_list(object), name);
    const char *value = header ? g_mime_header_get_raw_value(header) : nullptr;
    return value ? QByteArrayView(value) : QByteArrayView();
}

// --- People

// Both lists get a row for each mailbox; groups are left out, which hold lists of their own.
void addPeople(GMimeObject *message, const char *header, const QString &names,
               const QString &addresses, DocumentFacts &facts)
{
    constexpr int mostPeople = 500;
    const QByteArrayView raw = rawHeader(message, header);
    const QByteArray value =
        TextDecoding::wordsAsUtf8(raw.first(std::min<qsizetype>(raw.size(), 64 << 10)));
    const Held<InternetAddressList> list(internet_address_list_parse(nullptr, value.constData()));
    if (!list)
        return;
    const int count = std::min(internet_address_list_length(list.get()), mostPeople);
    for (int i = 0; i < count; ++i) {
        InternetAddress *address = internet_address_list_get_address(list.get(), i);
        if (!INTERNET_ADDRESS_IS_MAILBOX(address))
            continue;
        const QString mailbox =
            QString::fromUtf8(internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(address)));
        const QString name = QString::fromUtf8(internet_address_get_name(address));
        facts.addText(names, name.isEmpty() ? mailbox : name);
        facts.addText(addresses, mailbox);
    }
}

void fillFacts(GMimeMessage *message, DocumentFacts &facts)
{
    auto *object = GMIME_OBJECT(message);
    const QString subject = TextDecoding::decodeWords(rawHeader(object, "Subject").trimmed());
    facts.setTitle(subject);
    facts.setText(DocumentFacts::subject, subject);
    const auto addresses = QStringLiteral("kMDItemAuthorEmailAddresses");
    addPeople(object, "From", DocumentFacts::authors, addresses, facts);
    addPeople(object, "Sender", DocumentFacts::authors, addresses, facts);
    for (const char *header : {"To", "Cc", "Bcc"})
        addPeople(object, header, QStringLiteral("kMDItemRecipients"),
                  QStringLiteral("kMDItemRecipientEmailAddresses"), facts);
    facts.addList(DocumentFacts::keywords,
                  TextDecoding::decodeWords(rawHeader(object, "Keywords").trimmed()));
    facts.setText(DocumentFacts::creator,
                  TextDecoding::decodeWords(rawHeader(object, "X-Mailer").trimmed()));
    if (GDateTime *date = g_mime_message_get_date(message))
        facts.setDate(DocumentFacts::created,
                      QDateTime::fromSecsSinceEpoch(g_date_time_to_unix(date), Qt::UTC));
}

// --- Parts

QByteArray decodedContent(GMimePart *part)
{
    GMimeDataWrapper *content = g_mime_part_get_content(part);
    if (!content)
        return {};
    const Held<GMimeStream> stream(g_mime_stream_mem_new());
    // Encoded text is at most four times what it stands for; the rest of a part is not wanted.
    GMimeStream *raw = g_mime_data_wrapper_get_stream(content);
    const gint64 start = raw->bound_start;
    const gint64 longest = start + 4 * HtmlText::longest;
    const gint64 end = raw->bound_end < 0 ? longest : std::min(raw->bound_end, longest);
    const Held<GMimeStream> cut(g_mime_stream_substream(raw, start, end));
    const Held<GMimeDataWrapper> piece(
        g_mime_data_wrapper_new_with_stream(cut.get(), g_mime_data_wrapper_get_encoding(content)));
    g_mime_data_wrapper_write_to_stream(piece.get(), stream.get());
    const GByteArray *bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream.get()));
    return QByteArray(reinterpret_cast<const char *>(bytes->data), bytes->len);
}

enum class PartKind { Plain, Html, Other };

PartKind kindOf(GMimeObject *part)
{
    GMimeContentType *type = g_mime_object_get_content_type(part);
    if (!type || g_mime_content_type_is_type(type, "text", "plain"))
        return PartKind::Plain;
    return g_mime_content_type_is_type(type, "text", "html") ? PartKind::Html : PartKind::Other;
}

bool isAttachment(GMimeObject *part)
{
    const char *disposition = g_mime_object_get_disposition(part);
    return disposition && g_ascii_strcasecmp(disposition, "attachment") == 0;
}

class Body
{
public:
    Body(const DocumentSource &source, DocumentAnswer &answer)
        : m_source(source), m_facts(answer), m_flow(answer.text)
    {
        m_flow.append(answer.title);
        m_flow.endParagraph();
    }

    // Depth first, with a list of our own.
    void read(GMimeObject *top)
    {
        m_open = {top};
        for (int parts = 0; !m_open.empty() && parts < mostParts; ++parts) {
            if (m_flow.isFull() || m_source.mustStop())
                return;
            GMimeObject *part = m_open.back();
            m_open.pop_back();
            if (GMIME_IS_MULTIPART(part))
                open(GMIME_MULTIPART(part));
            else if (GMIME_IS_MESSAGE_PART(part))
                open(GMIME_MESSAGE_PART(part));
            else if (GMIME_IS_PART(part))
                take(GMIME_PART(part));
        }
    }

private:
    static constexpr int mostParts = 2000;

    void open(GMimeMultipart *multipart)
    {
        const int count = std::min(g_mime_multipart_get_count(multipart), mostParts);
        GMimeContentType *type = g_mime_object_get_content_type(GMIME_OBJECT(multipart));
        if (type && g_mime_content_type_is_type(type, "multipart", "alternative")) {
            if (GMimeObject *best = bestOf(multipart, count))
                m_open.push_back(best);
            return;
        }
        for (int i = count - 1; i >= 0; --i)
            m_open.push_back(g_mime_multipart_get_part(multipart, i));
    }

    // Alternatives say the same: plain text where there is some, else the last one.
    static GMimeObject *bestOf(GMimeMultipart *multipart, int count)
    {
        GMimeObject *best = nullptr;
        for (int i = 0; i < count; ++i) {
            GMimeObject *part = g_mime_multipart_get_part(multipart, i);
            if (GMIME_IS_PART(part) && kindOf(part) == PartKind::Plain)
                return part;
            best = part;
        }
        return best;
    }

    void open(GMimeMessagePart *attached)
    {
        GMimeMessage *message = g_mime_message_part_get_message(attached);
        if (!message)
            return;
        const QByteArrayView subject = rawHeader(GMIME_OBJECT(message), "Subject");
        m_flow.endParagraph();
        m_flow.append(TextDecoding::asLine(TextDecoding::decodeWords(subject.trimmed())));
        m_flow.endParagraph();
        if (GMimeObject *part = g_mime_message_get_mime_part(message))
            m_open.push_back(part);
    }

    void take(GMimePart *part)
    {
        auto *object = GMIME_OBJECT(part);
        m_flow.endParagraph();
        const PartKind kind = kindOf(object);
        if (kind == PartKind::Other || isAttachment(object))
            return takeName(part);
        const char *charset = g_mime_object_get_content_type_parameter(object, "charset");
        const QByteArray bytes = decodedContent(part);
        if (kind == PartKind::Html && !charset)
            HtmlText::read(HtmlText::asUtf8(bytes), m_flow, nullptr);
        else if (kind == PartKind::Html)
            HtmlText::read(TextDecoding::decode(bytes, charset).toUtf8(), m_flow, nullptr);
        else
            m_flow.append(TextDecoding::decode(bytes, charset).trimmed());
        m_flow.endParagraph();
    }

    void takeName(GMimePart *part)
    {
        const char *name = g_mime_part_get_filename(part);
        if (!name)
            return;
        const QString text = TextDecoding::asLine(TextDecoding::decodeWords(QByteArrayView(name)));
        m_facts.addText(QStringLiteral("kMDItemAttachmentNames"), text);
        m_flow.append(text);
    }

    const DocumentSource &m_source;
    DocumentFacts m_facts;
    FlowText m_flow;
    std::vector<GMimeObject *> m_open; // borrowed from the message
};

} // namespace

void MailReader::prepare() const
{
    g_mime_init();
}

std::optional<DocumentFailure> MailReader::read(const DocumentSource &source,
                                                DocumentAnswer &answer) const
{
    g_mime_init();
    const Bounds bounds = boundsOf(source);
    const Held<GMimeStream> stream(
        g_mime_stream_fs_new_with_bounds(source.descriptor(), bounds.start, bounds.end));
    g_mime_stream_fs_set_owner(GMIME_STREAM_FS(stream.get()), FALSE);
    const Held<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    const Held<GMimeMessage> message(g_mime_parser_construct_message(parser.get(), nullptr));
    if (!message)
        return DocumentFailure::Damaged;
    DocumentFacts facts(answer);
    fillFacts(message.get(), facts);
    GMimeObject *body = g_mime_message_get_mime_part(message.get());
    const bool hasHeader = g_mime_header_list_get_count(
                               g_mime_object_get_header_list(GMIME_OBJECT(message.get()))) > 0;
    if (!hasHeader)
        return DocumentFailure::Damaged;
    Body text(source, answer);
    if (body)
        text.read(body);
    return {};
}
