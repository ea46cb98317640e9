#include "IndexTestTree.h"

#include "IndexRules.h"
#include "IndexVerifier.h"
#include "MDQuery.h"
#include "XPPath.h"
#include "XPPropertyList.h"

#include <cstdio>
#include <filesystem>
#include <map>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace fs = std::filesystem;

static constexpr int lookEvery = 25; // steps between looks at what there is

static QByteArray pick(const std::vector<QByteArray> &list, std::mt19937 &random)
{
    return list.empty() ? QByteArray() : list[random() % list.size()];
}

void IndexTestTree::look()
{
    m_folders.assign(1, m_root);
    m_files.clear();
    for (const auto &entry : fs::recursive_directory_iterator(m_root.toStdString())) {
        const QByteArray path = QByteArray::fromStdString(entry.path().string());
        (entry.is_directory() ? m_folders : m_files).push_back(path);
    }
}

QByteArray IndexTestTree::folder()
{
    return pick(m_folders, m_random);
}

QByteArray IndexTestTree::file()
{
    return m_files.empty() ? m_root + "/none" : pick(m_files, m_random);
}

QByteArray IndexTestTree::newName()
{
    const QByteArray number = QByteArray::number(m_random() % 400);
    switch (m_random() % 6) {
    case 0:
        return "Bild " + number + ".png";
    case 1:
        return "no\xFFutf8 " + number + ".txt";
    case 2:
        return "Größe " + number + ".TXT";
    default:
        return "note " + number + ".txt";
    }
}

void IndexTestTree::write(const QByteArray &path)
{
    std::FILE *file = std::fopen(path.constData(), "we");
    if (!file)
        return; // its folder is gone
    if (m_random() % 10 != 0)
        std::fprintf(file, "kz%d%s", ++m_words, m_random() % 2 ? " und Rest\n" : "\n");
    std::fclose(file);
}

void IndexTestTree::rate(const QByteArray &path)
{
    static constexpr const char *name = "user.com.apple.metadata:kMDItemStarRating";
    if (m_random() % 4 == 0) {
        ::lremovexattr(path.constData(), name);
        return;
    }
    if (m_random() % 8 == 0) {
        // What no text holds: half a surrogate pair among tags, a name that is no UTF-8.
        static constexpr const char *tags = "user.com.apple.metadata:kMDItemKXUserTags";
        const auto odd = XPPropertyList::writeBinary(
            PropertyValue(QStringList{QStringLiteral("odd"), QString(QChar(0xD800))}),
            {.portable = false});
        ::lsetxattr(path.constData(), tags, odd->constData(), static_cast<size_t>(odd->size()), 0);
        ::lsetxattr(path.constData(), "user.com.apple.metadata:odd\xFF", "x", 1, 0);
    }
    const auto bytes =
        XPPropertyList::writeBinary(PropertyValue::real(static_cast<double>(1 + m_random() % 5)));
    ::lsetxattr(path.constData(), name, bytes->constData(), static_cast<size_t>(bytes->size()), 0);
}

void IndexTestTree::changeFolder()
{
    std::error_code ignored; // somebody's wish need not come true
    const QByteArray some = folder();
    const QByteArray fresh = folder() + "/Ordner " + QByteArray::number(m_random() % 60);
    const unsigned what = below(16);
    if (what < 10) {
        ::mkdir(fresh.constData(), 0755);
        m_folders.push_back(fresh);
    } else if (what < 15 && some != m_root) {
        fs::rename(some.toStdString(), fresh.toStdString(), ignored);
        look();
    } else if (some != m_root && m_files.size() > 400) {
        fs::remove_all(some.toStdString(), ignored);
        look();
    }
}

void IndexTestTree::change()
{
    if (m_steps++ % lookEvery == 0)
        look();
    if (m_files.size() < 300)
        write(folder() + '/' + newName());
    switch (m_random() % 8) {
    case 0:
        changeFolder();
        break;
    case 1:
    case 2:
        write(folder() + '/' + newName());
        break;
    case 3:
        write(file());
        break;
    case 4: { // saved as most programs do
        const QByteArray target = file();
        write(target + ".new");
        std::rename((target + ".new").constData(), target.constData());
        break;
    }
    case 5: {
        const QByteArray from = file();
        QByteArray to = newName();
        if (to.right(4) != from.right(4))
            to += from.right(4);
        std::rename(from.constData(), (folder() + '/' + to).constData());
        break;
    }
    case 6:
        rate(m_random() % 8 == 0 ? folder() : file());
        break;
    default:
        ::unlink(file().constData());
    }
}

void IndexTestTree::grow(int files)
{
    m_folders.assign(1, m_root);
    for (int i = 0; i < files / 12; ++i) {
        m_folders.push_back(folder() + "/Ordner " + QByteArray::number(i));
        ::mkdir(m_folders.back().constData(), 0755);
    }
    for (int i = 0; i < files; ++i) {
        m_files.push_back(folder() + '/' + newName());
        write(m_files.back());
        if (i % 3 == 0)
            rate(m_files.back());
    }
}

// --- Comparison

// Path to word, of the text files that hold one.
static std::map<std::string, std::string> wordsOnDisk(const QByteArray &root)
{
    std::map<std::string, std::string> words;
    for (const auto &entry : fs::recursive_directory_iterator(root.toStdString())) {
        const std::string extension = entry.path().extension().string();
        if (!entry.is_regular_file() || (extension != ".txt" && extension != ".TXT"))
            continue;
        char word[64] = "";
        std::FILE *file = std::fopen(entry.path().c_str(), "re");
        if (file && std::fscanf(file, "%63s", word) == 1)
            words[entry.path().string()] = word;
        if (file)
            std::fclose(file);
    }
    return words;
}

static std::vector<std::string> pathsWith(IndexSource &source, const std::string &word)
{
    const auto query = MDQuery::create(
        source,
        QStringLiteral("kMDItemTextContent == \"%1\"cdw").arg(QString::fromStdString(word)));
    (*query)->execute(MDQuery::Synchronous);
    std::vector<std::string> paths;
    for (qsizetype i = 0; i < (*query)->resultCount(); ++i)
        paths.push_back(XPPath::encode((*query)->resultAt(i)->path()).toStdString());
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string indexDisagreement(IndexSource &source, const QByteArray &root)
{
    std::string text;
    const auto differences = IndexVerifier(source.catalog(), IndexRules()).run();
    for (const IndexVerifier::Difference &difference : differences)
        text += "difference " + std::to_string(static_cast<int>(difference.kind)) + ": " +
                difference.path.toStdString() + '\n';
    const std::map<std::string, std::string> words = wordsOnDisk(root);
    std::vector<std::string> all;
    for (const auto &[path, word] : words) {
        all.push_back(path);
        if (pathsWith(source, word) != std::vector<std::string>{path})
            text.append("word ").append(word).append(" of ").append(path).append(
                " is not found there alone\n");
    }
    const std::vector<std::string> found = pathsWith(source, "kz*");
    for (const std::string &path : found) {
        if (!words.count(path))
            text += "text of " + path + " is found and gone\n";
    }
    if (found.size() != all.size())
        text += std::to_string(all.size()) + " files with text, " + std::to_string(found.size()) +
                " found\n";
    return text;
}
