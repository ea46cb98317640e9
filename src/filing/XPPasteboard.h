#pragma once

#include "XPDataOffer.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>

class QMimeData;

// What a clipboard or a drag carries, as far as a document can be made of it: bytes by kind of
// content, which MIME types of several programs' spellings are.
//
// Threads: a value. from() asks the other program and waits for its answer, on the thread of the
// offer; a QMimeData belongs to the main one.
class XPPasteboard
{
public:
    // In the order of XPPasteboardSupport::supportedTypes().
    enum class Kind { Tiff, Png, Jpeg, FileNames, String, Url, StyledText, Rtf, Pdf, Email };

    // The MIME types of a kind, the best first.
    static QStringList mimeTypes(Kind kind);
    // Asks for no bytes: what it offers may turn out to be nothing.
    static bool offers(const QStringList &formats, Kind kind);

    // Fetches what importing needs, and nothing else: of a picture that comes as PNG too no TIFF.
    static XPPasteboard from(XPDataOffer &offer);
    static XPPasteboard from(const QMimeData *data);
    // Bytes of one MIME type; an unknown type leaves it empty.
    static XPPasteboard of(const QString &mimeType, const QByteArray &bytes);

    bool has(Kind kind) const { return m_data.contains(kind); }
    QByteArray data(Kind kind) const { return m_data.value(kind); }
    bool isEmpty() const { return m_data.isEmpty(); }
    // Why something that was offered did not come, where nothing else did.
    const std::optional<XPError> &failure() const { return m_failure; }

    QString string() const; // of Kind::String, else the address of Kind::Url
    // Files of this machine.
    const QStringList &fileNames() const { return m_fileNames; }
    // What the source calls a web address ("public.url-name"); or what the user called the whole.
    const QString &urlName() const { return m_urlName; }
    void setUrlName(const QString &name) { m_urlName = name; }

private:
    void add(Kind kind, const QByteArray &bytes);
    void addUrl(const QString &mimeType, const QByteArray &bytes);
    bool fetch(XPDataOffer &offer, Kind kind);
    void fetchAddress(XPDataOffer &offer);

    QHash<Kind, QByteArray> m_data;
    QStringList m_fileNames;
    QString m_urlName;
    std::optional<XPError> m_failure;
};
