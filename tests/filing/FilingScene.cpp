#include "FilingScene.h"

#include "XPExtendedAttributes.h"
#include "XPFileInfo.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QDir>
#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>

namespace fs = std::filesystem;

static const QString tags = QStringLiteral("com.apple.metadata:kMDItemKXUserTags");

static fs::path trashFolder()
{
    return XPPath::encode(XPFolders::trash()).toStdString();
}

bool FilingScene::hasOtherVolume()
{
    const QTemporaryDir other(QStringLiteral("/dev/shm/murn-test-XXXXXX"));
    return other.isValid() && !XPExtendedAttributes::write(other.path(), tags, "x");
}

FilingScene::FilingScene(Target target, Kind kind, bool isTaken)
{
    std::error_code ignored;
    fs::remove_all(trashFolder(), ignored);
    fs::create_directories(XPPath::encode(XPFolders::ourApplicationSupport()).toStdString());
    const QString name =
        kind == Kind::File ? QStringLiteral("contract.pdf") : QStringLiteral("contract.rtfd");
    QDir().mkpath(m_folder.path(QStringLiteral("from")));
    QDir().mkpath(m_folder.path(QStringLiteral("to")));
    m_source = m_folder.path(QStringLiteral("from/")) + name;
    m_target = m_folder.path(QStringLiteral("to/")) + name;
    if (target == Target::OtherVolume) {
        m_other = std::make_unique<QTemporaryDir>(QStringLiteral("/dev/shm/murn-test-XXXXXX"));
        m_target = m_other->filePath(name);
    }
    make(m_source, kind, "the only copy");
    m_new = digest(XPPath::encode(m_source));
    if (isTaken) {
        make(m_target, Kind::File, "what was there before");
        m_old = digest(XPPath::encode(m_target));
    }
}

// Qt leaves names that it cannot spell.
FilingScene::~FilingScene()
{
    std::error_code ignored;
    if (m_other)
        fs::remove_all(XPPath::encode(m_other->path()).toStdString(), ignored);
}

static void dress(const QString &path, mode_t mode)
{
    const QByteArray bytes = XPPath::encode(path);
    (void)XPExtendedAttributes::write(path, tags, "tags of it");
    ::chmod(bytes.constData(), mode);
    const timespec times[] = {{1'400'000'000, 0}, {1'371'211'200, 123'456'789}};
    ::utimensat(AT_FDCWD, bytes.constData(), times, 0);
}

void FilingScene::make(const QString &path, Kind kind, const QByteArray &bytes) const
{
    const auto write = [](const QString &file, const QByteArray &text) {
        std::ofstream(XPPath::encode(file).toStdString()) << text.toStdString();
    };
    if (kind == Kind::File) {
        write(path, bytes);
        dress(path, 0640);
        return;
    }
    QDir().mkpath(path + QStringLiteral("/pictures"));
    write(path + QStringLiteral("/TXT.rtf"), bytes);
    write(path + QStringLiteral("/pictures/") + XPPath::decode("odd\xFF"), "a picture");
    dress(path + QStringLiteral("/TXT.rtf"), 0444);
    ::symlink("TXT.rtf", XPPath::encode(path + QStringLiteral("/link")).constData());
    dress(path + QStringLiteral("/pictures"), 0755);
    dress(path, 0750);
}

static void describe(std::ostringstream &text, const fs::path &path, const fs::path &name)
{
    const auto info = XPFileInfo::readAt(AT_FDCWD, path.c_str());
    if (!info)
        return;
    text << name.string() << ' ' << info->mode << '\n';
    if (info->isLink()) {
        text << fs::read_symlink(path).string() << '\n';
        return;
    }
    const auto value = XPExtendedAttributes::read(XPPath::decode(path.string()), tags);
    text << info->modified << ' ' << (value ? value->value_or("none").toStdString() : "unreadable")
         << '\n';
    if (info->isRegular())
        text << std::ifstream(path).rdbuf() << '\n';
}

QByteArray FilingScene::digest(const QByteArray &path)
{
    std::ostringstream text;
    const fs::path top = path.toStdString();
    describe(text, top, {});
    std::error_code error;
    std::vector<fs::path> below;
    if (fs::symlink_status(top, error).type() == fs::file_type::directory) {
        for (const auto &entry : fs::recursive_directory_iterator(top, error))
            below.push_back(entry.path());
    }
    std::sort(below.begin(), below.end());
    for (const fs::path &entry : below)
        describe(text, entry, entry.lexically_relative(top));
    return QByteArray::fromStdString(text.str());
}

QByteArrayList FilingScene::folders() const
{
    return {XPPath::encode(XPPath::folder(m_source)), XPPath::encode(XPPath::folder(m_target)),
            XPPath::encode(XPFolders::trash()), XPPath::encode(XPFolders::ourApplicationSupport())};
}

QByteArrayList FilingScene::entries() const
{
    QByteArrayList all;
    const QByteArrayList places = {folders()[0], folders()[1],
                                   QByteArray::fromStdString((trashFolder() / "files").string())};
    for (const QByteArray &folder : places) {
        std::error_code error;
        for (const auto &entry : fs::directory_iterator(folder.toStdString(), error))
            all.append(QByteArray::fromStdString(entry.path().string()));
    }
    return all;
}

static bool isHidden(const QByteArray &path)
{
    return path.contains("/.murn-");
}

int FilingScene::count(const QByteArray &digest) const
{
    int count = 0;
    for (const QByteArray &path : entries())
        count += !isHidden(path) && FilingScene::digest(path) == digest ? 1 : 0;
    return count;
}

int FilingScene::found() const
{
    return count(m_new);
}

int FilingScene::foundOld() const
{
    return count(m_old);
}

bool FilingScene::isAt(const QString &path) const
{
    return digest(XPPath::encode(path)) == m_new;
}

bool FilingScene::isOldAt(const QString &path) const
{
    return digest(XPPath::encode(path)) == m_old;
}

QByteArrayList FilingScene::remains() const
{
    QByteArrayList remains;
    for (const QByteArray &path : entries()) {
        const QByteArray text = digest(path);
        if (isHidden(path) || (text != m_new && text != m_old && !path.contains("/Trash")))
            remains.append(path);
    }
    return remains;
}
