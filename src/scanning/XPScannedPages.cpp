#include "XPScannedPages.h"

#include "XPAtomicFile.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QUndoCommand>
#include <algorithm>
#include <atomic>

static const QString listName = QStringLiteral("pages.plist");
static const QString pagesKey = QStringLiteral("pages");
static const QString leftOutKey = QStringLiteral("leftOut");
static const QString fileKey = QStringLiteral("file");
static const QString editKey = QStringLiteral("edit");
static const QString blankKey = QStringLiteral("blank");

// A change of the list, as the list before and after: pages are few, pictures stay on disk.
class XPScannedPages::Step : public QUndoCommand
{
public:
    Step(XPScannedPages &owner, const QString &text, QList<Page> after, int current)
        : QUndoCommand(text), m_owner(owner), m_before(owner.m_pages),
          m_currentBefore(owner.m_current), m_after(std::move(after)), m_currentAfter(current)
    {
    }
    void redo() override { m_owner.take(m_after, m_currentAfter); }
    void undo() override { m_owner.take(m_before, m_currentBefore); }

private:
    XPScannedPages &m_owner;
    const QList<Page> m_before;
    const int m_currentBefore;
    const QList<Page> m_after;
    const int m_currentAfter;
};

XPScannedPages::XPScannedPages(const QString &folder) : m_folder(folder)
{
    if ((m_error = XPFolders::create(folder)))
        return;
    auto lock = XPFileLock::takeIfFree(folder + QStringLiteral("/.lock"));
    if (!lock) {
        m_error = lock.error();
        return;
    }
    if (!*lock) {
        m_error = XPError::make(XPError::Kind::NotPermitted, qtTrId("KPScanInUse"), folder);
        return;
    }
    m_lock = std::move(*std::move(lock).value());
    find();
}

XPScannedPages::~XPScannedPages() = default;

QString XPScannedPages::folderStoragePath()
{
    return XPFolders::ourApplicationSupport() + QStringLiteral("/scans");
}

QString XPScannedPages::scanToImagePath() const
{
    static std::atomic<qint64> counter = 0;
    const qint64 number = QDateTime::currentSecsSinceEpoch() + ++counter;
    return m_folder + u'/' + QString::number(number) + QStringLiteral(".tiff");
}

// --- What an earlier run left

static bool isPicture(const QString &name)
{
    static const QStringList endings = {QStringLiteral("tiff"), QStringLiteral("jpg"),
                                        QStringLiteral("png")};
    const QString stem = name.section(u'.', 0, 0);
    return endings.contains(name.section(u'.', 1)) && !stem.isEmpty() &&
           std::all_of(stem.begin(), stem.end(), [](QChar each) { return each.isDigit(); });
}

void XPScannedPages::find()
{
    QStringList known;
    if (const auto bytes = XPAtomicFile::read(m_folder + u'/' + listName)) {
        const PropertyValue::Dictionary saved =
            XPPropertyList::read(*bytes).valueOr({}).dictionary();
        known = saved.value(leftOutKey).strings();
        const PropertyValue pages = saved.value(pagesKey);
        for (const PropertyValue &value : pages.array()) {
            const QString name = value.dictionary().value(fileKey).string();
            const QString path = m_folder + u'/' + name;
            known.append(name);
            if (isPicture(name) && QFile::exists(path))
                m_pages.append(
                    {path, XPPageEdit::fromSaved(value.dictionary().value(editKey).dictionary()),
                     value.dictionary().value(blankKey).boolValue()});
        }
    }
    // One that came just before the end, and is in no list: names are numbers that grow.
    const QStringList names = QDir(m_folder).entryList(QDir::Files, QDir::Name);
    for (const QString &name : names) {
        if (isPicture(name) && !known.contains(name))
            m_pages.append({m_folder + u'/' + name, {}, false});
    }
    m_current = numberOfPages();
}

void XPScannedPages::save()
{
    PropertyValue::Array saved;
    QStringList listed;
    for (const Page &page : std::as_const(m_pages)) {
        listed.append(XPPath::fileName(page.path));
        saved.append(PropertyValue::Dictionary{{fileKey, listed.last()},
                                               {editKey, page.edit.saved()},
                                               {blankKey, PropertyValue::boolean(page.isBlank)}});
    }
    QStringList leftOut;
    const QStringList names = QDir(m_folder).entryList(QDir::Files, QDir::Name);
    for (const QString &name : names) {
        if (isPicture(name) && !listed.contains(name))
            leftOut.append(name);
    }
    const PropertyValue::Dictionary list{{pagesKey, saved}, {leftOutKey, leftOut}};
    if (const auto bytes = XPPropertyList::writeXml(list))
        m_error = XPAtomicFile::write(m_folder + u'/' + listName, *bytes);
}

// --- Changing the list

void XPScannedPages::take(const QList<Page> &pages, int current)
{
    m_pages = pages;
    m_current = std::clamp(current, pages.isEmpty() ? 0 : 1, numberOfPages());
    save();
    Q_EMIT changed();
}

void XPScannedPages::push(const QString &text, QList<Page> pages, int current)
{
    m_undo.push(new Step(*this, text, std::move(pages), current));
}

void XPScannedPages::setCurrentPageNumber(int number)
{
    const int valid = std::clamp(number, m_pages.isEmpty() ? 0 : 1, numberOfPages());
    if (std::exchange(m_current, valid) != valid)
        Q_EMIT changed();
}

QString XPScannedPages::currentPagePath() const
{
    return m_current ? m_pages.at(m_current - 1).path : QString();
}

QStringList XPScannedPages::scannedImages() const
{
    QStringList paths;
    for (const Page &page : m_pages)
        paths.append(page.path);
    return paths;
}

std::optional<XPError> XPScannedPages::addPageImagePath(const QString &path)
{
    if (!m_lock)
        return m_error;
    if (XPPath::folder(path) != m_folder)
        return XPError::make(XPError::Kind::InvalidArgument, qtTrId("KPNotAPicture"), path);
    QList<Page> pages = m_pages;
    pages.append({path, {}, false});
    // Taking a page back is deleting it: what came from the paper is not undone by accident.
    const int count = static_cast<int>(pages.size());
    m_undo.clear();
    take(pages, count);
    return m_error;
}

std::optional<XPError> XPScannedPages::addPageImage(const QImage &image)
{
    if (!m_lock)
        return m_error;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG"))
        return XPError::make(XPError::Kind::Malformed, qtTrId("KPNotAPicture"));
    QString path = scanToImagePath();
    path.replace(path.lastIndexOf(u'.'), path.size(), QStringLiteral(".png"));
    if (auto error = XPAtomicFile::write(path, bytes))
        return error;
    return addPageImagePath(path);
}

void XPScannedPages::deletePage(int index)
{
    QList<Page> pages = m_pages;
    pages.removeAt(index);
    push(qtTrId("KPScanDeletePage"), pages, std::min(index + 1, static_cast<int>(pages.size())));
}

void XPScannedPages::movePage(int from, int to)
{
    if (from == to)
        return;
    QList<Page> pages = m_pages;
    pages.move(from, to);
    push(qtTrId("KPScanMovePage"), pages, to + 1);
}

void XPScannedPages::interleave()
{
    const qsizetype fronts = (m_pages.size() + 1) / 2;
    QList<Page> pages;
    for (qsizetype i = 0; i < fronts; ++i) {
        pages.append(m_pages.at(i));
        if (const qsizetype back = m_pages.size() - 1 - i; back >= fronts)
            pages.append(m_pages.at(back));
    }
    push(qtTrId("KPScanInterleave"), pages, m_current);
}

void XPScannedPages::setEdit(int index, const XPPageEdit &edit)
{
    if (m_pages.at(index).edit == edit)
        return;
    QList<Page> pages = m_pages;
    pages[index].edit = edit;
    push(qtTrId("KPScanChangePage"), pages, index + 1);
}

void XPScannedPages::markBlank(int index, bool blank)
{
    QList<Page> pages = m_pages;
    pages[index].isBlank = blank;
    take(pages, m_current);
}

// --- Pictures

QImage XPScannedPages::rendered(const QString &path, const XPPageEdit &edit)
{
    QImageReader reader(path);
    reader.setAllocationLimit(1024);
    const QImage image = reader.read();
    return edit.isNone() ? image : edit.applied(image);
}

XPResult<QStringList> XPScannedPages::filesOf(const QList<Page> &pages, const QString &folder,
                                              const std::function<bool(int)> &progress)
{
    QStringList files;
    for (const Page &page : pages) {
        if (progress && !progress(static_cast<int>(files.size())))
            return XPError::make(XPError::Kind::Cancelled, QStringLiteral("cancelled"));
        if (page.edit.isNone()) {
            files.append(page.path);
            continue;
        }
        const QImage image = rendered(page.path, page.edit);
        const QString made =
            folder + QStringLiteral("/made-%1.png").arg(files.size(), 4, 10, QLatin1Char('0'));
        if (image.isNull() || !image.save(made, "PNG", 80)) // quickly rather than small
            return XPError::make(XPError::Kind::NoSpace, qtTrId("KPScanPageNotMade"), made);
        files.append(made);
    }
    return files;
}

void XPScannedPages::clearAllImages()
{
    if (!m_lock)
        return;
    m_undo.clear();
    m_pages.clear();
    m_current = 0;
    // The list first: a crash leaves pictures that are known as left out.
    save();
    const QStringList names = QDir(m_folder).entryList(QDir::Files);
    for (const QString &name : names) {
        if (isPicture(name) || name.startsWith(u"made-") || name.endsWith(u".part"))
            QFile::remove(m_folder + u'/' + name);
    }
    Q_EMIT changed();
}

void XPScannedPages::forgetFirst(int count)
{
    if (!m_lock)
        return;
    const QList<Page> forgotten = m_pages.first(count);
    m_undo.clear();
    m_pages.remove(0, count);
    m_current = std::min(numberOfPages(), std::max(1, m_current - count));
    save(); // first, as above
    for (const Page &page : forgotten)
        QFile::remove(page.path);
    Q_EMIT changed();
}
