#include "IndexSettings.h"

#include "IndexRules.h"
#include "UserDefaults.h"
#include "XPFolders.h"
#include "XPPath.h"

namespace IndexSettings {

const QString rootsKey = QStringLiteral("KPIndexRoots");
const QString rulesKey = QStringLiteral("KPIndexExclusions");

} // namespace IndexSettings

QStringList IndexSettings::roots()
{
    const PropertyValue saved = UserDefaults::standard().value(rootsKey);
    if (!saved.isArray())
        return {XPFolders::home()};
    QStringList roots;
    for (const PropertyValue &root : saved.array()) {
        // A path that is no well-formed text is stored as its bytes.
        roots.append(root.isString() ? XPFolders::expandTilde(root.string())
                                     : XPPath::decode(root.data()));
    }
    return roots;
}

void IndexSettings::setRoots(const QStringList &roots)
{
    PropertyValue::Array values;
    for (const QString &root : roots) {
        if (root.isValidUtf16())
            values.append(root);
        else
            values.append(XPPath::encode(root));
    }
    UserDefaults::standard().setValue(rootsKey, values);
}

QStringList IndexSettings::allRoots()
{
    return roots() << XPFolders::ourApplicationSupport() + QStringLiteral("/Pending Documents");
}

QStringList IndexSettings::rules()
{
    const PropertyValue saved = UserDefaults::standard().value(rulesKey);
    return saved.isArray() ? saved.strings() : defaultRules();
}

QStringList IndexSettings::defaultRules()
{
    return IndexRules::defaultRules();
}

void IndexSettings::setRules(const QStringList &rules)
{
    UserDefaults::standard().setValue(rulesKey, PropertyValue(rules));
}

bool IndexSettings::isPattern(const QString &text)
{
    const bool isPath = text.startsWith(u'/') || text.startsWith(u"~/");
    return !text.isEmpty() && !text.startsWith(u'!') && (isPath || !text.contains(u'/')) &&
           text.isValidUtf16();
}

// The last rule that fits decides, so a new one goes to the end.
void IndexSettings::setExcluded(const QString &pattern, bool isExcluded)
{
    QStringList all = rules();
    const bool wasRule = all.removeAll(pattern) > 0;
    all.removeAll(u'!' + pattern);
    if (isExcluded)
        all.append(pattern);
    else if (!wasRule)
        all.append(u'!' + pattern);
    setRules(all);
}

bool IndexSettings::isLeftOut(const QString &folder, const QString &root)
{
    const IndexRules all(rules());
    for (QString at = folder; at.size() > root.size(); at = XPPath::folder(at)) {
        if (all.excludes(XPPath::encode(XPPath::folder(at)), XPPath::encode(XPPath::fileName(at))))
            return true;
    }
    return false;
}

QString IndexSettings::storePath()
{
    return XPFolders::ourCaches() + QStringLiteral("/index/index.sqlite");
}
