#include "IndexRules.h"

#include "XPFolders.h"
#include "XPPath.h"

#include <cstdlib>
#include <fnmatch.h>

QStringList IndexRules::defaultRules()
{
    return {
        QStringLiteral(".*"), // hidden folders: settings, caches, version-control stores
        QStringLiteral("node_modules"), QStringLiteral("bower_components"),
        QStringLiteral("__pycache__"),  QStringLiteral("site-packages"),
        QStringLiteral("CMakeFiles"),   QStringLiteral("DerivedData"),
        QStringLiteral("lost+found"),   QStringLiteral("~/snap"),
        QStringLiteral("~/go/pkg"),
    };
}

IndexRules::IndexRules(const QStringList &rules) : m_texts(rules)
{
    for (QString text : rules) {
        Rule rule;
        rule.include = text.startsWith(u'!');
        if (rule.include)
            text.remove(0, 1);
        text = XPFolders::expandTilde(text);
        rule.isPath = text.startsWith(u'/');
        while (rule.isPath && text.size() > 1 && text.endsWith(u'/'))
            text.chop(1);
        rule.pattern = XPPath::encode(text);
        if (!rule.pattern.isEmpty())
            m_rules.append(rule);
    }
}

IndexRules IndexRules::withRoots(const QByteArrayList &roots) const
{
    IndexRules rules = *this;
    for (const QByteArray &root : roots)
        rules.leaveOut(root);
    return rules;
}

IndexRules IndexRules::withoutStore(const QString &store) const
{
    IndexRules rules = *this;
    if (store.isEmpty())
        return rules;
    const QByteArray folder = XPPath::encode(XPPath::folder(XPPath::absolute(store)));
    rules.leaveOut(folder);
    // A root may lead there by another way than the cache's path does.
    if (char *real = ::realpath(folder.constData(), nullptr)) {
        rules.leaveOut(real);
        std::free(real); // NOLINT(cppcoreguidelines-no-malloc): realpath's own
    }
    return rules;
}

void IndexRules::leaveOut(const QByteArray &folder)
{
    m_folders.insert(folder);
    m_folderNames.insert(folder.mid(folder.lastIndexOf('/') + 1));
}

bool IndexRules::excludes(QByteArrayView parent, QByteArrayView name) const
{
    const QByteArray ownName = name.toByteArray();
    QByteArray path;
    if (m_folderNames.contains(ownName)) {
        path = parent == "/" ? '/' + ownName : parent.toByteArray() + '/' + ownName;
        if (m_folders.contains(path))
            return true;
    }
    for (auto rule = m_rules.rbegin(); rule != m_rules.rend(); ++rule) {
        if (rule->isPath && path.isEmpty())
            path = parent == "/" ? '/' + ownName : parent.toByteArray() + '/' + ownName;
        const QByteArray &text = rule->isPath ? path : ownName;
        if (::fnmatch(rule->pattern.constData(), text.constData(), 0) == 0)
            return !rule->include;
    }
    return false;
}

bool IndexRules::isCacheMarker(QByteArrayView entryName) const
{
    return !m_rules.isEmpty() && (entryName == "CACHEDIR.TAG" || entryName == "CMakeCache.txt");
}
