#pragma once

#include "XPActivation.h"
#include "XPError.h"

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

// One instance for each user, and what other programs ask of it: the interface
// org.freedesktop.Application of the Desktop Entry Specification (Activate, Open, ActivateAction)
// and our own com.brindle.murn.Services (SearchInMurn, CreateFiledFile), at /com/brindle/murn.
//
// Callers are strangers: what comes is bounded, values of other kinds than a method has are left
// out, and no answer says anything of the user's files. Requests come as signals from the event
// loop, so a program that is still starting gets them when it runs it.
// Threads: main. Without a session bus everything else works, save that nobody can ask.
class XPApplicationBus : public QObject
{
    Q_OBJECT

public:
    static const QString serviceName; // "com.brindle.murn"
    static const QString objectPath;
    // The actions of the desktop entry, which ActivateAction() names too. The text to search for
    // may come as its first parameter.
    static const QString searchAction; // "SearchText"
    static const QString fileAction;   // "CreateFiledFile"
    // Of files that come as addresses in its first parameter, a list: to see them in the window, to
    // change their tags, to file them. What writes asks.
    static const QString revealAction;   // "RevealDocuments"
    static const QString tagAction;      // "TagDocuments"
    static const QString fileIntoAction; // "FileDocuments"

    static constexpr qsizetype mostUris = 100'000;
    static constexpr qsizetype longestText = 65'536; // UTF-16 units of an address or a text

    explicit XPApplicationBus(QDBusConnection bus = QDBusConnection::sessionBus(),
                              QObject *parent = nullptr);
    ~XPApplicationBus() override;

    enum class Claim {
        First,   // this process is the one now
        Another, // there is one already: ask it
        NoBus,
    };
    Claim claim();
    // The program ends: the next start is the first instance again, not sent to this one.
    void release();

    // To the running instance; waits until it took the request. Nothing to open: it comes to the
    // front.
    std::optional<XPError> askToOpen(const QStringList &uris, const XPActivation &activation);
    std::optional<XPError> askForAction(const QString &action, const QVariantList &parameters,
                                        const XPActivation &activation);

    // What the two interfaces hand on.
    void takeOpen(const QStringList &uris, const QVariantMap &platformData);
    void takeAction(const QString &name, const QVariantList &parameters,
                    const QVariantMap &platformData);

Q_SIGNALS:
    void activateAsked(const XPActivation &activation);
    void openAsked(const QStringList &uris, const XPActivation &activation); // as one list
    void searchAsked(const QString &text, const XPActivation &activation);   // empty: no text came
    void fileAsked(const XPActivation &activation);
    // `action`: one of those of files.
    void documentsAsked(const QString &action, const QStringList &uris,
                        const XPActivation &activation);

private:
    std::optional<XPError> call(const QString &method, const QVariantList &arguments);

    QDBusConnection m_bus;
    bool m_isClaimed = false;
};
