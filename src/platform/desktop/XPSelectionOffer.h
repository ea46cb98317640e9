#pragma once

#include "XPDataOffer.h"
#include "XPFileDescriptor.h"

#include <QHash>
#include <atomic>
#include <chrono>

struct xcb_connection_t;

// An offer of another program under X11, read over a connection of its own, so that any thread
// can, and no window waits: the selections CLIPBOARD and XdndSelection by the rules of the ICCCM,
// in pieces (INCR) where the source sends pieces.
//
// Errors: Cancelled after cancel(); TooLarge over `mostBytes`; NotFound when the source is gone or
// refuses; Io when it is silent for `patience`. After a source went or fell silent nothing more is
// asked of it.
// Threads: made anywhere; read by one thread; cancel() by any.
class XPSelectionOffer : public XPDataOffer
{
public:
    struct Source
    {
        const char *selection = "CLIPBOARD";
        uint32_t window = 0; // of the program that drags
        uint32_t time = 0;   // of the drop, in the server's milliseconds; 0: now
    };
    // `formats`: as Qt names them, which calls several kinds of text and of addresses by one name;
    // used where the source does not say by itself.
    XPSelectionOffer(const Source &source, const QStringList &formats);

    // Of what Qt names of it; null where this is no X11 session. On the main thread.
    static std::unique_ptr<XPSelectionOffer> ofClipboard(const QStringList &formats);
    // The drop that is being handled. Null also where followDrops() was not called before it.
    static std::unique_ptr<XPSelectionOffer> ofDrop(const QStringList &formats);
    // Notes from now on what is dropped onto windows of this program, and by whom. Main thread.
    static void followDrops();

    ~XPSelectionOffer() override;
    XPSelectionOffer(const XPSelectionOffer &) = delete;
    XPSelectionOffer &operator=(const XPSelectionOffer &) = delete;

    QStringList formats() override;
    XPResult<QByteArray> read(const QString &format) override;
    std::optional<QByteArray> promisedName() override;
    XPResult<Answer> save(const QByteArray &url) override;

    void cancel();
    qint64 bytesRead() const { return m_bytesRead; } // any thread

    void setPatience(std::chrono::milliseconds patience) { m_patience = patience; }
    static constexpr qint64 mostBytes = 512 << 20; // of one kind: more is no document

private:
    using Event = std::unique_ptr<void, decltype(&std::free)>; // an xcb_generic_event_t
    struct Property
    {
        uint32_t type = 0;
        QByteArray bytes;
    };

    std::optional<XPError> connect();
    uint32_t atom(const char *name);
    XPResult<Event> nextEvent();
    XPError gone(XPError error);
    XPResult<Property> convert(const char *target);
    XPResult<Property> takeProperty(uint32_t window, uint32_t property, bool isTaken);
    XPResult<Property> readPieces();
    QStringList namesOf(const QByteArray &atoms);

    const Source m_source;
    QStringList m_formats;
    bool m_isAsked = false; // for its formats
    std::chrono::milliseconds m_patience;
    std::atomic<qint64> m_bytesRead = 0;
    xcb_connection_t *m_connection = nullptr;
    uint32_t m_window = 0;
    uint32_t m_owner = 0;
    XPFileDescriptor m_cancelled;     // an eventfd, readable from cancel() on
    std::optional<XPError> m_failure; // nothing more is asked
    QHash<QByteArray, uint32_t> m_atoms;
};
