#include "ImportMessages.h"

#include "XPPropertyList.h"

#include <algorithm>
#include <array>

using Dictionary = PropertyValue::Dictionary;

// An answer's attributes are few and small.
static constexpr XPPropertyList::Limits limits = {
    .bytes = ImportFrame::maximumHead, .depth = 4, .objects = 20'000};
static constexpr qsizetype maximumAttributes = 256;
static constexpr qsizetype maximumKey = 100;
static constexpr qsizetype maximumTitle = 2000;
static constexpr qsizetype maximumValue = 64 << 10; // of a string, in UTF-16 units

static XPError malformed(const char *what)
{
    return XPError::malformed(
        QStringLiteral("the importer's answer is malformed: %1").arg(QLatin1String(what)));
}

static QByteArray headOf(const Dictionary &values)
{
    return XPPropertyList::writeBinary(values, limits).valueOr({});
}

static XPResult<Dictionary> headFrom(const ImportFrame &frame, ImportFrame::Kind kind)
{
    if (frame.kind != kind)
        return malformed("not what was asked for");
    const auto head = XPPropertyList::readBinary(frame.head, limits);
    if (!head)
        return head.error();
    if (!head->isDictionary())
        return malformed("no dictionary");
    return head->dictionary();
}

static int intIn(const Dictionary &head, const char *key, int most)
{
    return static_cast<int>(std::clamp<qint64>(head[QLatin1String(key)].integerValue(), 0, most));
}

// Zero is none.
static PropertyValue codeOf(std::optional<DocumentFailure> failure)
{
    return PropertyValue::integer(failure ? static_cast<int>(*failure) : 0);
}

static XPResult<std::optional<DocumentFailure>> failureIn(const Dictionary &head)
{
    const qint64 code = head[QStringLiteral("failure")].integerValue();
    if (code < 0 || code > static_cast<qint64>(DocumentFailure::Unreadable))
        return malformed("an unknown failure");
    return code == 0 ? std::nullopt : std::optional(static_cast<DocumentFailure>(code));
}

// --- Hello

bool ImportHello::reads(const QStringList &tree) const
{
    return std::any_of(tree.begin(), tree.end(),
                       [&](const QString &type) { return types.contains(type); });
}

ImportFrame ImportHello::frame() const
{
    return {ImportFrame::Kind::Hello,
            headOf({{QStringLiteral("landlock"), PropertyValue::integer(landlock)},
                    {QStringLiteral("seccomp"), PropertyValue::boolean(seccomp)},
                    {QStringLiteral("types"), types}}),
            {}};
}

XPResult<ImportHello> ImportHello::from(const ImportFrame &frame)
{
    const auto head = headFrom(frame, ImportFrame::Kind::Hello);
    if (!head)
        return head.error();
    return ImportHello{intIn(*head, "landlock", 1000),
                       (*head)[QStringLiteral("seccomp")].boolValue(),
                       (*head)[QStringLiteral("types")].strings()};
}

// --- Job

ImportFrame ImportJob::frame() const
{
    return {ImportFrame::Kind::Job,
            headOf({{QStringLiteral("size"), PropertyValue::integer(size)},
                    {QStringLiteral("type"), type},
                    {QStringLiteral("tree"), tree},
                    {QStringLiteral("mime"), mime},
                    {QStringLiteral("extension"), extension},
                    {QStringLiteral("page"), PropertyValue::integer(page)},
                    {QStringLiteral("pixels"), PropertyValue::integer(pixels)},
                    {QStringLiteral("milliseconds"), PropertyValue::integer(milliseconds)}}),
            {}};
}

XPResult<ImportJob> ImportJob::from(const ImportFrame &frame)
{
    const auto head = headFrom(frame, ImportFrame::Kind::Job);
    if (!head)
        return head.error();
    ImportJob job;
    job.size = std::max<qint64>((*head)[QStringLiteral("size")].integerValue(), 0);
    job.type = (*head)[QStringLiteral("type")].string();
    job.tree = (*head)[QStringLiteral("tree")].strings();
    job.mime = (*head)[QStringLiteral("mime")].string();
    job.extension = (*head)[QStringLiteral("extension")].string();
    job.page = intIn(*head, "page", std::numeric_limits<int>::max());
    job.pixels = intIn(*head, "pixels", ImportFrame::maximumPixels);
    job.milliseconds = intIn(*head, "milliseconds", std::numeric_limits<int>::max());
    return job;
}

// --- Answer

// What a document must not say: what the user put on the file and what the file system knows.
static bool mayState(const QString &key)
{
    // The one of the convention's own names that is not the user's: keywords embedded in the file.
    if (key == u"kMDItemKXXMPKeywords")
        return true;
    static constexpr std::array denied = {u"kMDItemKX",
                                          u"kMDItemStarRating",
                                          u"kMDItemUserTags",
                                          u"kMDItemFinderComment",
                                          u"kMDItemFS",
                                          u"kMDItemPath",
                                          u"kMDItemKind",
                                          u"kMDItemContentType",
                                          u"kMDItemContentModificationDate",
                                          u"kMDItemTextContent",
                                          u"kMDItemLastUsedDate",
                                          u"kMDItemSupportFileType",
                                          u"kMDItemDisplayName"};
    const bool isName = key.startsWith(QLatin1String("kMDItem")) && key.size() <= maximumKey &&
                        std::all_of(key.begin(), key.end(), [](QChar c) {
                            return c.unicode() < 128 && (c.isLetterOrNumber() || c == u'_');
                        });
    return isName && std::none_of(denied.begin(), denied.end(), [&](const char16_t *prefix) {
               return key.startsWith(QStringView(prefix));
           });
}

// Numbers, dates, short texts and lists of texts; no data and nothing nested.
static bool isPlainValue(const PropertyValue &value)
{
    const auto isShort = [](const PropertyValue &text) {
        return text.isString() && text.string().size() <= maximumValue;
    };
    switch (value.kind()) {
    case PropertyValue::Kind::Bool:
    case PropertyValue::Kind::Integer:
    case PropertyValue::Kind::Real:
    case PropertyValue::Kind::Date:
        return true;
    case PropertyValue::Kind::String:
        return isShort(value);
    case PropertyValue::Kind::Array:
        return std::all_of(value.array().begin(), value.array().end(), isShort);
    default:
        return false;
    }
}

static Dictionary plainAttributes(const Dictionary &attributes)
{
    Dictionary plain;
    for (auto it = attributes.begin(); it != attributes.end(); ++it) {
        if (plain.size() < maximumAttributes && mayState(it.key()) && isPlainValue(it.value()))
            plain.insert(it.key(), it.value());
    }
    return plain;
}

// Half of a character at the end, or alone, is no text that can be stored.
static QString wellFormed(QString text, qsizetype limit)
{
    text.truncate(limit);
    return text.isValidUtf16() ? text : QString::fromUtf8(text.toUtf8());
}

static PropertyValue wellFormed(const PropertyValue &value)
{
    if (value.isString())
        return wellFormed(value.string(), maximumValue);
    if (!value.isArray())
        return value;
    PropertyValue::Array array;
    for (const PropertyValue &each : value.array())
        array.append(wellFormed(each));
    return array;
}

ImportFrame importFrameOf(const DocumentAnswer &answer)
{
    Dictionary attributes;
    for (auto it = answer.attributes.begin(); it != answer.attributes.end(); ++it)
        attributes.insert(it.key(), wellFormed(it.value()));
    Dictionary head = {{QStringLiteral("title"), wellFormed(answer.title, maximumTitle)},
                       {QStringLiteral("pages"), PropertyValue::integer(answer.pages)},
                       {QStringLiteral("failure"), codeOf(answer.failure)},
                       {QStringLiteral("attributes"), plainAttributes(attributes)}};
    QByteArray bytes = headOf(head);
    if (bytes.isEmpty()) { // more than a head can hold: rather the text than nothing
        head.remove(QStringLiteral("attributes"));
        bytes = headOf(head);
    }
    return {ImportFrame::Kind::Answer, bytes, answer.text.utf8()};
}

XPResult<DocumentAnswer> documentAnswerFrom(const ImportFrame &frame)
{
    const auto head = headFrom(frame, ImportFrame::Kind::Answer);
    if (!head)
        return head.error();
    const auto failure = failureIn(*head);
    if (!failure)
        return failure.error();
    DocumentAnswer answer;
    answer.failure = *failure;
    answer.title = (*head)[QStringLiteral("title")].string();
    answer.pages = intIn(*head, "pages", std::numeric_limits<int>::max());
    answer.attributes = plainAttributes((*head)[QStringLiteral("attributes")].dictionary());
    if (answer.title.size() > maximumTitle)
        return malformed("too long a title");
    if (!frame.body.isValidUtf8() || frame.body.contains('\0'))
        return malformed("no UTF-8");
    answer.text.append(QByteArrayView(frame.body));
    return answer;
}

// --- Picture

ImportFrame ImportPicture::frame() const
{
    return {ImportFrame::Kind::Picture,
            headOf({{QStringLiteral("width"), PropertyValue::integer(width)},
                    {QStringLiteral("height"), PropertyValue::integer(height)},
                    {QStringLiteral("failure"), codeOf(failure)}}),
            pixels};
}

XPResult<ImportPicture> ImportPicture::from(const ImportFrame &frame)
{
    const auto head = headFrom(frame, ImportFrame::Kind::Picture);
    if (!head)
        return head.error();
    const auto failure = failureIn(*head);
    if (!failure)
        return failure.error();
    ImportPicture picture;
    picture.failure = *failure;
    picture.width = intIn(*head, "width", ImportFrame::maximumPixels);
    picture.height = intIn(*head, "height", ImportFrame::maximumPixels);
    picture.pixels = frame.body;
    if (qsizetype{picture.width} * picture.height * 4 != picture.pixels.size())
        return malformed("pixels and size disagree");
    if ((picture.width == 0 || picture.height == 0) != picture.failure.has_value())
        return malformed("a picture without pixels");
    return picture;
}
