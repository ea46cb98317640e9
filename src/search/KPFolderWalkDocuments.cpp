#include "KPFolderWalk.h"
#include "Karvex.h"
#include "XPPath.h"

KPFolderWalk::Place KPFolderWalk::place(KPFolderNode &node, int descriptor, bool deep) const
{
    return {node, descriptor, XPPath::decode(node.path()),
            QStringLiteral("/proc/self/fd/%1/").arg(descriptor), deep};
}

void KPFolderWalk::look(const Place &place, const QByteArray &name)
{
    const auto info = XPFileInfo::readAt(place.descriptor, name.constData());
    if (info && info->isDirectory()) {
        seeFolder(place, name);
        return;
    }
    if (place.node.folders.count(name))
        dropFolder(place.node, name);
    if (info && info->isRegular()) {
        lookAtDocument(place, name, *info);
        return;
    }
    forgetDocument(place.node, place.path, name);
    // One line for a folder that may be listed but not entered.
    if (!info && info.error().kind != XPError::Kind::NotFound)
        setProblem(place.path, info.error().reason());
}

// A file system that cannot keep attributes has no tags to show: that is no fault of the file.
static bool isFault(const XPError &error)
{
    return error.kind != XPError::Kind::Unsupported && error.kind != XPError::Kind::NotFound;
}

static QString unreadable(const char *what, const XPError &error)
{
    return QStringLiteral("%1 cannot be read: %2").arg(QLatin1String(what), error.reason());
}

static void readAttributes(KPFoundDocument &document, const QString &path)
{
    if (const auto tags = Karvex::getUserTags(path))
        document.tags = *tags;
    else if (isFault(tags.error()))
        document.error = unreadable("tags", tags.error());
    if (const auto rating = Karvex::getRating(path))
        document.rating = *rating;
    else if (document.error.isEmpty() && isFault(rating.error()))
        document.error = unreadable("the rating", rating.error());
}

static size_t factsOf(const KPFoundDocument &document)
{
    const XPFileInfo &info = document.info;
    return qHashMulti(0, info.mode, info.size, info.modified, info.changed, info.device, info.inode,
                      info.links, document.tags, document.rating, document.error);
}

void KPFolderWalk::lookAtDocument(const Place &place, const QByteArray &name,
                                  const XPFileInfo &info)
{
    const QString text = XPPath::decode(name);
    KPFoundDocument document{place.path + u'/' + text, info, {}, 0, {}};
    readAttributes(document, place.attributes + text);
    forgetProblem(document.path);
    if (!m_matcher.matches(document)) {
        forgetDocument(place.node, place.path, name);
        if (!document.error.isEmpty())
            setProblem(document.path, document.error);
        return;
    }
    const KPFolderNode::Document now{factsOf(document), place.node.pass};
    const auto known = place.node.documents.find(name);
    if (known == place.node.documents.end()) {
        place.node.documents.insert(name, now);
        m_reports.document(KPWalkReport::Kind::Added, document);
        return;
    }
    if (known->facts != now.facts)
        m_reports.document(KPWalkReport::Kind::Changed, document);
    *known = now;
}

void KPFolderWalk::setProblem(const QString &path, const QString &message)
{
    m_problems.insert(path, message);
}

void KPFolderWalk::forgetProblem(const QString &path)
{
    if (!m_problems.isEmpty())
        m_problems.remove(path);
}

void KPFolderWalk::forgetProblemsBelow(const QString &folder)
{
    const QString prefix = folder + u'/';
    auto it = m_problems.lowerBound(prefix);
    while (it != m_problems.end() && it.key().startsWith(prefix))
        it = m_problems.erase(it);
}

QStringList KPFolderWalk::problems() const
{
    QStringList texts;
    for (auto it = m_problems.cbegin(); it != m_problems.cend(); ++it)
        texts.append(it.key() + QStringLiteral(": ") + it.value());
    const auto unwatched = std::count_if(m_unwatched.begin(), m_unwatched.end(),
                                         [](const KPFolderNode *node) { return !node->failed; });
    if (unwatched > 0)
        texts.append(QStringLiteral("%1 folders cannot be watched (limit of the system); they are "
                                    "read again from time to time")
                         .arg(unwatched));
    if (m_lostEvents)
        texts.append(QStringLiteral("too many changes at once; all folders are read again"));
    return texts;
}
