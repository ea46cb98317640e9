#include "KPLibraryAnswers.h"

#include "IndexLook.h"
#include "KPDocValues.h"
#include "KPIndexFilter.h"
#include "KPSearcher.h"
#include "MDQuery.h"
#include "XPApplicationBus.h"
#include "XPFileUrls.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QMimeDatabase>
#include <QUrl>
#include <algorithm>
#include <chrono>

// The first question starts this process: it waits so long for the index to be loaded.
static constexpr auto patience = std::chrono::seconds(3);

QStringList KPLibraryAnswers::search(const QString &text, qsizetype most) const
{
    if (text.trimmed().isEmpty() || text.size() > longestText)
        return {};
    const auto until = std::chrono::steady_clock::now() + patience;
    m_index.waitUntilLoaded([until] { return std::chrono::steady_clock::now() > until; });
    const auto state =
        KPSearchState::searchStateWithNativeDictionary({})->searchStateWithNewSearchString(
            text, false, false, true);
    const KPIndexFilter filter(KPSearcher::shownOf(state));
    const auto query = MDQuery::create(m_index, filter.text());
    if (!query)
        return {};
    (*query)->setMaxCount(std::clamp<qsizetype>(most, 1, mostResults));
    (*query)->setSortOrder(QStringLiteral("kMDItemFSContentChangeDate"), false);
    (*query)->execute(MDQuery::Synchronous);
    QStringList addresses;
    for (qsizetype i = 0; i < (*query)->resultCount(); ++i) {
        const QString path = (*query)->resultAt(i)->path();
        addresses.append(QString::fromLatin1(XPFileUrls::encoded(path)));
    }
    return addresses;
}

// The bytes that an address of ours stands for; empty for any other.
static QByteArray bytesOf(const QString &address)
{
    const QString scheme = QStringLiteral("file://");
    constexpr qsizetype longest = 3 * 4096;
    if (!address.startsWith(scheme + u'/') || address.size() > longest)
        return {};
    return QByteArray::fromPercentEncoding(address.mid(scheme.size()).toLatin1());
}

std::optional<KPLibraryAnswers::Document> KPLibraryAnswers::document(const QString &address) const
{
    const QByteArray bytes = bytesOf(address);
    if (bytes.isEmpty())
        return {};
    QStringList tags;
    {
        const IndexLook look(m_index);
        const auto row = look.atPath(bytes);
        if (!row)
            return {};
        tags = KPDocValues::ofRow(*row).tags();
    }
    const QString path = XPPath::decode(bytes);
    const QString name = XPPath::fileName(path);
    Document document;
    document.path = path;
    document.name = XPPath::printable(name);
    document.folder = XPPath::printable(XPFolders::abbreviateWithTilde(XPPath::folder(path)));
    document.icon = QMimeDatabase().mimeTypeForFile(name, QMimeDatabase::MatchExtension).iconName();
    document.tags = tags;
    return document;
}

static void askWindow(const QString &action, const QVariantList &parameters)
{
    auto message = QDBusMessage::createMethodCall(
        XPApplicationBus::serviceName, XPApplicationBus::objectPath,
        QStringLiteral("org.freedesktop.Application"), QStringLiteral("ActivateAction"));
    message.setArguments({action, QVariant(parameters), QVariantMap()});
    QDBusConnection::sessionBus().send(message);
}

void KPLibraryAnswers::reveal(const QStringList &addresses)
{
    if (!addresses.isEmpty())
        askWindow(
            XPApplicationBus::revealAction,
            {addresses.first(mostResults < addresses.size() ? mostResults : addresses.size())});
}

void KPLibraryAnswers::searchInWindow(const QString &text)
{
    if (text.size() <= longestText)
        askWindow(XPApplicationBus::searchAction, {text});
}
