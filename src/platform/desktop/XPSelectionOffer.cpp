#include "XPSelectionOffer.h"

#include "XPX11.h"

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/eventfd.h>
#include <vector>
#include <xcb/xcb.h>

using namespace std::chrono_literals;

static constexpr std::chrono::milliseconds usualPatience = 5s;
static constexpr uint32_t pieceUnits = 1
                                       << 18; // of 4 bytes: how much of a property is read at once
static constexpr qint64 longestName = 4096;   // that a source promises

// --- Who drops

namespace {

// XDND: the source's window is the first word of each message, the drop's time the third.
class DropNotices : public QAbstractNativeEventFilter
{
public:
    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *) override
    {
        const auto *event = static_cast<const xcb_client_message_event_t *>(message);
        if (type == "xcb_generic_event_t" && (event->response_type & 0x7f) == XCB_CLIENT_MESSAGE &&
            event->type == m_drop) {
            source = event->data.data32[0];
            time = event->data.data32[2];
        }
        return false;
    }
    xcb_window_t source = 0;
    xcb_timestamp_t time = 0;

private:
    const xcb_atom_t m_drop = XPX11::atom("XdndDrop");
};

} // namespace

static DropNotices *theNotices = nullptr;

void XPSelectionOffer::followDrops()
{
    if (XPX11::connection() == nullptr || theNotices != nullptr)
        return;
    theNotices = new DropNotices; // as long as the application, which it filters
    qGuiApp->installNativeEventFilter(theNotices);
}

std::unique_ptr<XPSelectionOffer> XPSelectionOffer::ofClipboard(const QStringList &formats)
{
    if (XPX11::connection() == nullptr)
        return nullptr;
    return std::make_unique<XPSelectionOffer>(Source(), formats);
}

std::unique_ptr<XPSelectionOffer> XPSelectionOffer::ofDrop(const QStringList &formats)
{
    // A drag of this program's own is handed over by Qt, without the server.
    if (XPX11::connection() == nullptr || theNotices == nullptr || theNotices->source == 0 ||
        XPX11::isOurs(XPX11::ownerOf("XdndSelection")))
        return nullptr;
    const Source source{"XdndSelection", theNotices->source, theNotices->time};
    return std::make_unique<XPSelectionOffer>(source, formats);
}

// --- The connection

XPSelectionOffer::XPSelectionOffer(const Source &source, const QStringList &formats)
    : m_source(source), m_formats(formats), m_patience(usualPatience),
      m_cancelled(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
}

XPSelectionOffer::~XPSelectionOffer()
{
    if (m_connection != nullptr)
        xcb_disconnect(m_connection);
}

void XPSelectionOffer::cancel()
{
    const uint64_t one = 1;
    (void)!::write(m_cancelled.get(), &one, sizeof one);
}

// What is wrong once is not tried again.
XPError XPSelectionOffer::gone(XPError error)
{
    m_failure = error;
    return error;
}

static XPError sourceIsGone()
{
    return XPError::make(XPError::Kind::NotFound, qtTrId("XPOfferGone"));
}

uint32_t XPSelectionOffer::atom(const char *name)
{
    uint32_t &known = m_atoms[name];
    if (known == 0) {
        const auto cookie =
            xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(qstrlen(name)), name);
        if (auto *reply = xcb_intern_atom_reply(m_connection, cookie, nullptr)) {
            known = reply->atom;
            std::free(reply);
        }
    }
    return known;
}

std::optional<XPError> XPSelectionOffer::connect()
{
    if (m_connection != nullptr || m_failure)
        return m_failure;
    m_connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(m_connection) != 0)
        return gone(XPError::make(XPError::Kind::Io, qtTrId("XPOfferNoConnection")));
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    const uint32_t wanted = XCB_EVENT_MASK_PROPERTY_CHANGE;
    m_window = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, screen->root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &wanted);
    const auto cookie = xcb_get_selection_owner(m_connection, atom(m_source.selection));
    if (auto *reply = xcb_get_selection_owner_reply(m_connection, cookie, nullptr)) {
        m_owner = reply->owner;
        std::free(reply);
    }
    if (m_owner == 0)
        return gone(sourceIsGone());
    // The owner's end is told.
    const uint32_t end = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection, m_owner, XCB_CW_EVENT_MASK, &end);
    return {};
}

static uint8_t typeOf(const void *event)
{
    return static_cast<const xcb_generic_event_t *>(event)->response_type & 0x7f;
}

// The next event of any kind; an error when there is none in time, or none to wait for.
XPResult<XPSelectionOffer::Event> XPSelectionOffer::nextEvent()
{
    const auto deadline = std::chrono::steady_clock::now() + m_patience;
    xcb_flush(m_connection);
    for (;;) {
        if (Event event(xcb_poll_for_event(m_connection), &std::free); event) {
            const uint8_t type = typeOf(event.get());
            if (type == XCB_DESTROY_NOTIFY)
                return gone(sourceIsGone());
            if (type != 0) // 0: an error of a window that is gone
                return event;
            continue;
        }
        if (xcb_connection_has_error(m_connection) != 0)
            return gone(sourceIsGone());
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        std::array<pollfd, 2> waiting{
            {{xcb_get_file_descriptor(m_connection), POLLIN, 0}, {m_cancelled.get(), POLLIN, 0}}};
        const int ready =
            ::poll(waiting.data(), waiting.size(), static_cast<int>(std::max(left, 0ms).count()));
        if ((waiting[1].revents & POLLIN) != 0)
            return gone(XPError::make(XPError::Kind::Cancelled, QStringLiteral("stopped")));
        if (ready == 0)
            return gone(XPError::make(XPError::Kind::Io, qtTrId("XPOfferSilent")));
    }
}

// --- Reading

XPResult<XPSelectionOffer::Property> XPSelectionOffer::takeProperty(uint32_t window,
                                                                    uint32_t property, bool isTaken)
{
    Property taken;
    for (uint32_t at = 0;;) {
        const auto cookie = xcb_get_property(m_connection, isTaken ? 1 : 0, window, property,
                                             XCB_GET_PROPERTY_TYPE_ANY, at, pieceUnits);
        const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
            xcb_get_property_reply(m_connection, cookie, nullptr), &std::free);
        if (!reply)
            return gone(sourceIsGone());
        const int length = xcb_get_property_value_length(reply.get());
        taken.type = reply->type;
        taken.bytes.append(static_cast<const char *>(xcb_get_property_value(reply.get())), length);
        m_bytesRead += length;
        if (taken.bytes.size() > mostBytes)
            return XPError::make(XPError::Kind::TooLarge, qtTrId("XPOfferTooLarge"));
        if (reply->bytes_after == 0 || length == 0)
            return taken;
        at += static_cast<uint32_t>(length) / 4;
    }
}

// The source puts one piece after the other into the property, each when the last was taken.
XPResult<XPSelectionOffer::Property> XPSelectionOffer::readPieces()
{
    Property whole;
    for (;;) {
        const auto event = nextEvent();
        if (!event)
            return event.error();
        const auto *change = static_cast<const xcb_property_notify_event_t *>(event->get());
        if (typeOf(event->get()) != XCB_PROPERTY_NOTIFY || change->atom != atom("MURN_TRANSFER") ||
            change->state != XCB_PROPERTY_NEW_VALUE)
            continue;
        const auto piece = takeProperty(m_window, change->atom, true);
        if (!piece)
            return piece.error();
        if (piece->bytes.isEmpty())
            return whole;
        whole.type = piece->type;
        whole.bytes += piece->bytes;
        if (whole.bytes.size() > mostBytes)
            return gone(XPError::make(XPError::Kind::TooLarge, qtTrId("XPOfferTooLarge")));
    }
}

// Type 0: the source has nothing of this kind.
XPResult<XPSelectionOffer::Property> XPSelectionOffer::convert(const char *target)
{
    if (const auto error = connect())
        return *error;
    const uint32_t property = atom("MURN_TRANSFER");
    xcb_delete_property(m_connection, m_window, property);
    xcb_convert_selection(m_connection, m_window, atom(m_source.selection), atom(target), property,
                          m_source.time);
    for (;;) {
        const auto event = nextEvent();
        if (!event)
            return event.error();
        if (typeOf(event->get()) != XCB_SELECTION_NOTIFY)
            continue;
        const auto *told = static_cast<const xcb_selection_notify_event_t *>(event->get());
        if (told->target != atom(target))
            continue; // a late answer to an earlier question
        if (told->property == XCB_NONE)
            return Property();
        auto answer = takeProperty(m_window, property, true);
        if (answer && answer->type == atom("INCR"))
            return readPieces();
        return answer;
    }
}

QStringList XPSelectionOffer::namesOf(const QByteArray &atoms)
{
    constexpr size_t most = 200;
    std::vector<uint32_t> targets(
        std::min(most, static_cast<size_t>(atoms.size()) / sizeof(uint32_t)));
    if (!targets.empty())
        std::memcpy(targets.data(), atoms.constData(), targets.size() * sizeof(uint32_t));
    std::vector<xcb_get_atom_name_cookie_t> cookies;
    cookies.reserve(targets.size());
    for (const uint32_t target : targets)
        cookies.push_back(xcb_get_atom_name(m_connection, target));
    QStringList names;
    for (const auto cookie : cookies) {
        const std::unique_ptr<xcb_get_atom_name_reply_t, decltype(&std::free)> reply(
            xcb_get_atom_name_reply(m_connection, cookie, nullptr), &std::free);
        if (!reply)
            continue;
        const QString name = QString::fromLatin1(xcb_get_atom_name_name(reply.get()),
                                                 xcb_get_atom_name_name_length(reply.get()));
        const bool isText = name == u"UTF8_STRING" || name == u"STRING" || name == u"TEXT";
        names.append(isText ? QStringLiteral("text/plain") : name);
    }
    return names;
}

QStringList XPSelectionOffer::formats()
{
    if (std::exchange(m_isAsked, true))
        return m_formats;
    const auto targets = convert("TARGETS");
    const QStringList own = targets ? namesOf(targets->bytes) : QStringList();
    if (own.isEmpty())
        return m_formats;
    const bool promises = m_formats.contains(directSaveFormat) && !own.contains(directSaveFormat);
    m_formats = promises ? own + QStringList{directSaveFormat} : own;
    return m_formats;
}

// What X calls texts; Qt names them all as the one.
static QList<QByteArray> targetsOf(const QString &format)
{
    if (!format.startsWith(QStringLiteral("text/plain")))
        return {format.toLatin1()};
    return {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "STRING"};
}

XPResult<QByteArray> XPSelectionOffer::read(const QString &format)
{
    m_bytesRead = 0;
    for (const QByteArray &target : targetsOf(format)) {
        const auto answer = convert(target.constData());
        if (!answer)
            return answer.error();
        if (answer->type == 0 || answer->bytes.isEmpty())
            continue;
        return target == "STRING" ? QString::fromLatin1(answer->bytes).toUtf8() : answer->bytes;
    }
    return QByteArray();
}

// --- A file that the source writes

std::optional<QByteArray> XPSelectionOffer::promisedName()
{
    if (m_source.window == 0 || !offers(directSaveFormat) || connect())
        return {};
    const auto name = takeProperty(m_source.window, atom("XdndDirectSave0"), false);
    if (!name || name->type == 0 || name->bytes.size() > longestName)
        return {};
    return name->bytes;
}

XPResult<XPDataOffer::Answer> XPSelectionOffer::save(const QByteArray &url)
{
    if (const auto error = connect())
        return *error;
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_source.window,
                        atom("XdndDirectSave0"), atom("text/plain"), 8,
                        static_cast<uint32_t>(url.size()), url.constData());
    const auto answer = convert("XdndDirectSave0");
    if (!answer)
        return answer.error();
    if (answer->bytes.startsWith('S'))
        return Answer::Writes;
    return answer->bytes.startsWith('F') && offers(anyBytesFormat) ? Answer::WantsToBeRead
                                                                   : Answer::Refuses;
}
