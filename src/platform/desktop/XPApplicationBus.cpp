#include "XPApplicationBus.h"

#include "XPApplicationAdaptors.h"
#include "XPLog.h"
#include "XPPath.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

const QString XPApplicationBus::serviceName = QStringLiteral("com.brindle.murn");
const QString XPApplicationBus::objectPath = QStringLiteral("/com/brindle/murn");
const QString XPApplicationBus::searchAction = QStringLiteral("SearchText");
const QString XPApplicationBus::fileAction = QStringLiteral("CreateFiledFile");
const QString XPApplicationBus::revealAction = QStringLiteral("RevealDocuments");
const QString XPApplicationBus::tagAction = QStringLiteral("TagDocuments");
const QString XPApplicationBus::fileIntoAction = QStringLiteral("FileDocuments");

static const QString applicationInterface = QStringLiteral("org.freedesktop.Application");
// The running instance may be busy for a moment; a hung one is told of.
static constexpr int patienceMs = 10'000;

XPApplicationBus::XPApplicationBus(QDBusConnection bus, QObject *parent)
    : QObject(parent), m_bus(std::move(bus))
{
    new XPApplicationAdaptor(this); // this one's, both
    new XPServicesAdaptor(this);
}

XPApplicationBus::~XPApplicationBus()
{
    release();
}

void XPApplicationBus::release()
{
    if (!std::exchange(m_isClaimed, false))
        return;
    m_bus.unregisterObject(objectPath);
    m_bus.interface()->unregisterService(serviceName);
}

XPApplicationBus::Claim XPApplicationBus::claim()
{
    if (!m_bus.isConnected())
        return Claim::NoBus;
    // First the object: whoever sees the name may call at once.
    if (!m_bus.registerObject(objectPath, this, QDBusConnection::ExportAdaptors)) {
        qCWarning(xpLog) << "the session bus takes no object of ours";
        return Claim::NoBus;
    }
    const auto reply =
        m_bus.interface()->registerService(serviceName, QDBusConnectionInterface::DontQueueService,
                                           QDBusConnectionInterface::DontAllowReplacement);
    if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered) {
        m_isClaimed = true;
        return Claim::First;
    }
    m_bus.unregisterObject(objectPath);
    return reply.isValid() ? Claim::Another : Claim::NoBus;
}

std::optional<XPError> XPApplicationBus::call(const QString &method, const QVariantList &arguments)
{
    auto message =
        QDBusMessage::createMethodCall(serviceName, objectPath, applicationInterface, method);
    message.setArguments(arguments);
    const QDBusMessage reply = m_bus.call(message, QDBus::Block, patienceMs);
    if (reply.type() == QDBusMessage::ReplyMessage)
        return {};
    return XPError::make(XPError::Kind::Io, reply.errorMessage());
}

std::optional<XPError> XPApplicationBus::askToOpen(const QStringList &uris,
                                                   const XPActivation &activation)
{
    if (uris.isEmpty())
        return call(QStringLiteral("Activate"), {activation.platformData()});
    return call(QStringLiteral("Open"), {uris, activation.platformData()});
}

std::optional<XPError> XPApplicationBus::askForAction(const QString &action,
                                                      const QVariantList &parameters,
                                                      const XPActivation &activation)
{
    return call(QStringLiteral("ActivateAction"),
                {action, QVariant(parameters), activation.platformData()});
}

// Those that can be addresses.
static QStringList bounded(const QStringList &uris)
{
    QStringList kept;
    for (const QString &uri : uris) {
        if (!uri.isEmpty() && uri.size() <= XPApplicationBus::longestText)
            kept.append(uri);
    }
    return kept;
}

void XPApplicationBus::takeOpen(const QStringList &uris, const QVariantMap &platformData)
{
    if (uris.size() > mostUris) {
        qCWarning(xpLog) << "asked to open too much:" << uris.size();
        return;
    }
    const QStringList kept = bounded(uris);
    const auto activation = XPActivation::fromPlatformData(platformData);
    if (kept.isEmpty())
        Q_EMIT activateAsked(activation);
    else
        Q_EMIT openAsked(kept, activation);
}

void XPApplicationBus::takeAction(const QString &name, const QVariantList &parameters,
                                  const QVariantMap &platformData)
{
    const auto activation = XPActivation::fromPlatformData(platformData);
    if (name == searchAction) {
        const QVariant first = parameters.value(0);
        const QString text = first.typeId() == QMetaType::QString ? first.toString() : QString();
        if (text.size() <= longestText)
            Q_EMIT searchAsked(text, activation);
    } else if (name == fileAction) {
        Q_EMIT fileAsked(activation);
    } else if (name == revealAction || name == tagAction || name == fileIntoAction) {
        // From the bus a list comes as what the bus made of it.
        const QStringList uris = qdbus_cast<QStringList>(parameters.value(0));
        if (!uris.isEmpty() && uris.size() <= mostUris)
            Q_EMIT documentsAsked(name, bounded(uris), activation);
    } else {
        qCWarning(xpLog).noquote() << "no such action:" << XPPath::printable(name.left(80));
    }
}
