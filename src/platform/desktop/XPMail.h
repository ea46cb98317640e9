#pragma once

#include "XPError.h"
#include "XPFileDescriptor.h"

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <functional>
#include <vector>

// A new message with files attached, in the user's mail program, where he writes and sends it.
//
// Asked in this order, until one takes it: the program that the user chose, the desktop's portal
// (org.freedesktop.portal.Email), `xdg-email`.
// Threads: main; nothing here waits. Ownership: an object asks once and deletes itself when it has
// been answered.
class XPMail : public QObject
{
    Q_OBJECT

public:
    // Files as the portal takes them: opened without being read.
    struct Attachment
    {
        QString path;
        XPFileDescriptor descriptor;
    };
    using Attachments = std::vector<Attachment>;
    using Done = std::function<void(const std::optional<XPError> &)>;

    // Regular files only. Any thread; blocking file calls.
    static XPResult<Attachment> open(const QString &path);

    // `program`: the desktop entry of the one that the user chose; one that is not installed is
    // passed over. Nothing is told of what the user makes of the message.
    static void compose(Attachments attachments, const QString &program, Done done,
                        const QDBusConnection &bus = QDBusConnection::sessionBus());

private:
    XPMail(Attachments attachments, Done done, QDBusConnection bus);
    void askPortal();
    void askXdgEmail();
    void finish(const std::optional<XPError> &error);
    QStringList paths() const;

private Q_SLOTS:
    void answered(uint response, const QVariantMap &results);

private:
    const Attachments m_attachments;
    Done m_done;
    QDBusConnection m_bus;
    bool m_isPortalOver = false;
};
