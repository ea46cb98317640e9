#include "IndexCorpus.h"

#include "KPFileType.h"
#include "Karvex.h"
#include "XPPath.h"

#include <QHash>
#include <QSet>
#include <cmath>

using IndexCorpusWords::Random;

static constexpr qint64 second = 1'000'000'000;
static constexpr qint64 oldest = 1'420'070'400; // 2015, seconds since 1970
static constexpr qint64 newest = 1'735'689'600; // 2025
static constexpr quint32 filesOfFolder = 62;    // in the mean

static quint32 filesFor(Random &random)
{
    // 10 to 200, small folders more often than large ones.
    return static_cast<quint32>(10 * std::exp(random.unit() * std::log(20.0)));
}

IndexCorpus::IndexCorpus(quint32 files, Bodies bodies) : m_bodies(bodies)
{
    Random random(files);
    m_folders.push_back({0, 0, 0, {}});
    QSet<QByteArray> taken; // parent and name
    const quint32 top = std::max(2U, files / filesOfFolder / 100);
    quint32 left = files;
    while (left > 0) {
        const auto count = static_cast<quint32>(m_folders.size());
        Folder folder{};
        if (count > top) {
            // The shallower of two, so that there are more folders in the middle than below.
            do {
                folder.parent = 1 + random.below(count - 1);
                const quint32 other = 1 + random.below(count - 1);
                if (m_folders[other].depth < m_folders[folder.parent].depth)
                    folder.parent = other;
            } while (m_folders[folder.parent].depth >= 6);
        }
        folder.depth = m_folders[folder.parent].depth + 1;
        // The outermost folders hold folders only.
        folder.files = folder.depth < 2 ? 0 : std::min(left, filesFor(random));
        folder.name = IndexCorpusWords::folderName(random);
        if (taken.contains(QByteArray::number(folder.parent) + '/' + folder.name))
            folder.name += ' ' + QByteArray::number(count);
        taken.insert(QByteArray::number(folder.parent) + '/' + folder.name);
        left -= folder.files;
        m_folders.push_back(folder);
    }
}

QByteArray IndexCorpus::path(quint32 folder) const
{
    QByteArray path;
    for (; folder != 0; folder = m_folders[folder].parent)
        path = m_folders[folder].name + (path.isEmpty() ? QByteArray() : '/' + path);
    return path;
}

static PropertyValue tagTime(Random &random)
{
    const auto seconds =
        static_cast<double>(oldest) + random.unit() * static_cast<double>(newest - oldest);
    return PropertyValue::Date::fromSecondsSince1970(seconds);
}

static IndexRecord::Attributes attributes(Random &random)
{
    IndexRecord::Attributes values;
    const bool tagged = random.percent(80);
    if (tagged) {
        QStringList tags;
        const quint32 count = 1 + random.below(3);
        for (quint32 i = 0; i < count; ++i)
            tags.append(IndexCorpusWords::tag(random.zipf(IndexCorpusWords::tagCount)));
        values.insert(Karvex::userTagsKey, Karvex::removeDuplicateTags(PropertyValue(tags)));
        values.insert(Karvex::userTagTimeKey, tagTime(random));
    }
    if (!tagged || random.percent(40)) {
        values.insert(Karvex::starRatingKey, PropertyValue::real(1 + random.below(5)));
        values.insert(Karvex::ratingTimeKey, tagTime(random));
    }
    if (random.percent(30))
        values.insert(Karvex::managedKey, PropertyValue::boolean(true));
    return values;
}

std::vector<IndexCorpus::File> IndexCorpus::filesIn(quint32 folder) const
{
    Random random(quint64{folder} * 7919 + m_folders.size());
    std::vector<File> files;
    QSet<QByteArray> taken;
    for (quint32 i = 0; i < m_folders[folder].files; ++i) {
        File file;
        // A whole home folder holds about as much text as anything else; one with bodies more.
        file.extension =
            IndexCorpusWords::extension(random, random.percent(m_bodies == Bodies::None ? 35 : 75));
        file.name = IndexCorpusWords::fileName(random, file.extension);
        while (taken.contains(file.name))
            file.name = QByteArray::number(i) + file.name;
        taken.insert(file.name);
        // Half of all files are of the last two years.
        const double age = std::pow(random.unit(), 2.3);
        file.modified =
            newest * second - static_cast<qint64>(age * static_cast<double>(newest - oldest) * 1e9);
        file.size = static_cast<qint64>(std::exp(4 + random.unit() * 12));
        if (random.percent(5))
            file.attributes = attributes(random);
        file.seed = random.next();
        files.push_back(std::move(file));
    }
    return files;
}

QByteArray IndexCorpus::body(const File &file) const
{
    Random random(file.seed);
    if (m_bodies == Bodies::None)
        return {};
    if (IndexCorpusWords::isTextExtension(file.extension))
        return IndexCorpusWords::prose(random, 512 + static_cast<int>(random.below(1024)));
    QByteArray bytes(256, '\0'); // of no format in particular
    for (char &byte : bytes)
        byte = static_cast<char>(random.below(256));
    return bytes;
}

// --- Without a disk

static IndexChange put(IndexItem item, IndexItem parent, const QByteArray &name)
{
    IndexChange change;
    change.record.item = item;
    change.record.parent = parent;
    change.record.name = name;
    change.record.info.device = quint64{8} << 32 | 1;
    change.record.info.inode = quint64{item} * 3 + 1000;
    change.record.info.links = 1;
    return change;
}

void IndexCorpus::batches(const std::function<void(const IndexBatch &batch)> &take) const
{
    QHash<QByteArray, QString> types;
    std::vector<IndexItem> items(m_folders.size());
    IndexItem last = 0;
    for (quint32 number = 0; number < m_folders.size(); ++number) {
        IndexBatch batch;
        const Folder &folder = m_folders[number];
        items[number] = ++last;
        IndexChange own =
            number == 0 ? put(last, 0, rootPath) : put(last, items[folder.parent], folder.name);
        own.record.type = KPFileType::folderUTI;
        own.record.info.mode = S_IFDIR | 0755;
        own.record.info.modified = own.record.info.changed = newest * second + number;
        batch.push_back(own);
        for (File &file : filesIn(number)) {
            IndexChange change = put(++last, items[number], file.name);
            QString &type = types[file.extension];
            if (type.isEmpty())
                type = KPFileType::preferredUTIForExtension(QString::fromLatin1(file.extension));
            change.record.type = type;
            change.record.info.mode = S_IFREG | 0644;
            change.record.info.size = file.size;
            change.record.info.modified = file.modified;
            change.record.info.changed = file.modified + second;
            change.record.info.birth = file.modified - 1000 * second;
            change.record.attributes = std::move(file.attributes);
            batch.push_back(std::move(change));
        }
        take(batch);
    }
}

static std::unique_ptr<IndexCatalog> catalogOf(quint32 files)
{
    auto made = std::make_unique<IndexCatalog>();
    IndexCorpus(files, IndexCorpus::Bodies::None).batches([&](const IndexBatch &batch) {
        made->apply(batch);
    });
    made->orderNames(); // as after a crawl
    return made;
}

const IndexCatalog &IndexCorpus::hundredThousand()
{
    static const std::unique_ptr<IndexCatalog> catalog = catalogOf(100'000);
    return *catalog;
}

const IndexCatalog &IndexCorpus::million()
{
    static const std::unique_ptr<IndexCatalog> catalog = catalogOf(1'000'000);
    return *catalog;
}
