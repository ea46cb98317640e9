// KPDoc: what people read of a document.
#include "KPDoc.h"
#include "KPDocMetaData.h"
#include "KPFileType.h"
#include "XPFileSize.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QHash>
#include <QLocale>

// --- The folder

static const QString separator = QStringLiteral(" • ");

// The parts of a path as shown one after the other; "/" is one, in front.
static QStringList displayComponents(const QString &path)
{
    return QStringList(QStringLiteral("/")) + path.split(u'/', Qt::SkipEmptyParts);
}

static bool beginsWith(const QStringList &components, const QStringList &prefix)
{
    return components.size() >= prefix.size() && components.first(prefix.size()) == prefix;
}

// The folder, from the home folder on where it is inside, else from the root.
static QString displayedFolder(const QString &folder)
{
    static const QStringList home = displayComponents(XPFolders::home());
    QStringList components = displayComponents(folder);
    if (components == home)
        return qtTrId("KPHome");
    if (components.size() == 1)
        return components.first();
    components.remove(0, beginsWith(components, home) ? home.size() : 1);
    return components.join(separator);
}

namespace {

// Made once for each folder. A few thousand folders hold a million files.
struct DisplayedFolders
{
    XPMutex mutex;
    QHash<KPPooledString, QString> texts XP_GUARDED_BY(mutex);
};

} // namespace

QString KPDoc::parentFolderForDisplay() const
{
    static auto *const known = new DisplayedFolders;
    const KPPooledString folder = pooledParentPath();
    if (folder.isEmpty())
        return {};
    {
        const XPLocker lock(known->mutex);
        const auto it = known->texts.constFind(folder);
        if (it != known->texts.cend())
            return *it;
    }
    QString text = displayedFolder(folder.toString());
    const XPLocker lock(known->mutex);
    known->texts.insert(folder, text);
    return text;
}

QString KPDoc::compactFolderPath() const
{
    return XPFolders::abbreviateWithTilde(parentPath());
}

QString KPDoc::compactFilePath() const
{
    return XPFolders::abbreviateWithTilde(filePath());
}

// --- Numbers

QString KPDoc::fileSizeString() const
{
    return xpFileSizeInWords(fileSize());
}

int KPDoc::pageCount() const
{
    quint32 asOf = 0;
    {
        const KPDocLocker lock(m_lock);
        if ((m_cachedInfo & PageCount) && m_rare)
            return m_rare->pageCount;
        asOf = m_state;
    }
    const PropertyValue value =
        KPDocMetaData::indexed(filePath(), QStringLiteral("kMDItemNumberOfPages"));
    const auto pages = static_cast<int>(value.doubleValue());
    // What is not known yet may be known later.
    const KPDocLocker lock(m_lock);
    if (pages > 0 && m_state == asOf) {
        rare().pageCount = pages;
        m_cachedInfo |= PageCount;
    }
    return pages;
}

QString KPDoc::pageCountString() const
{
    const int pages = pageCount();
    return pages > 0 ? QLocale().toString(pages) : QStringLiteral("-");
}

// --- Descriptions

static QString dateText(const QDateTime &date, bool includeTime)
{
    const QDateTime local = date.toLocalTime();
    return includeTime ? QLocale().toString(local, QLocale::ShortFormat)
                       : QLocale().toString(local.date(), QLocale::ShortFormat);
}

static QString tagsText(const KPTagName::Tags &tags)
{
    return KPTagName::displayStringsForTagNames(tags).join(QStringLiteral(", "));
}

QString KPDoc::descriptionForUser() const
{
    QStringList lines = {
        XPPath::printable(fsDisplayName()),
        KPFileType::displayNameForUTI(fileType()) + QStringLiteral(", ") + fileSizeString(),
        XPPath::printable(compactFolderPath()),
        dateText(unixFileModificationDate(), true),
    };
    const QString tags = tagsText(tagNamesOfTypeUserEntered());
    if (!tags.isEmpty())
        lines.append(XPPath::printable(tags));
    if (const int stars = starsToShow())
        lines.append(QString(stars, u'★'));
    return lines.join(u'\n');
}

QString KPDoc::htmlTableLineDescriptionForTable(bool forTable, bool includeTime) const
{
    QStringList cells = {
        fsDisplayName(),
        KPFileType::displayNameForUTI(fileType()),
        fileSizeString(),
        dateText(unixFileModificationDate(), includeTime),
        tagsText(tagNamesOfTypeUserEntered()),
        QString(starsToShow(), u'★'),
    };
    for (QString &cell : cells)
        cell = XPPath::printable(cell).toHtmlEscaped();
    if (forTable)
        return QStringLiteral("<tr><td>") + cells.join(QStringLiteral("</td><td>")) +
               QStringLiteral("</td></tr>\n");
    cells.removeAll(QString());
    return cells.join(QStringLiteral(", ")) + QStringLiteral("<br>\n");
}
