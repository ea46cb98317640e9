#include "TestHome.h"

#include "XPPath.h"

#include <QCoreApplication>
#include <QDir>
#include <QScopeGuard>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

TestFolder::TestFolder() : m_folder(QDir::currentPath() + QStringLiteral("/murn-test-XXXXXX"))
{
    Q_ASSERT(m_folder.isValid());
}

TestFolder::~TestFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(XPPath::encode(path()).toStdString(), ignored);
}

QString TestFolder::file(const QString &name, const QByteArray &bytes) const
{
    QString full = path(name);
    QDir().mkpath(XPPath::folder(full));
    std::FILE *file = std::fopen(XPPath::encode(full).constData(), "wb");
    Q_ASSERT(file);
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), file);
    std::fclose(file);
    return full;
}

void usePrivateHome()
{
    // Removed by this process alone, not by one that a test forks and lets come to its end.
    static const auto owner = ::getpid();
    static QTemporaryDir home(QDir::currentPath() + QStringLiteral("/murn-home-XXXXXX"));
    static const auto keep = qScopeGuard([] { home.setAutoRemove(::getpid() == owner); });
    const QString base = home.path();
    const struct
    {
        const char *variable;
        const char *folder;
    } places[] = {{"HOME", "/"},
                  {"XDG_CONFIG_HOME", "/.config"},
                  {"XDG_DATA_HOME", "/.local/share"},
                  {"XDG_CACHE_HOME", "/.cache"},
                  {"XDG_RUNTIME_DIR", "/.run"}};
    for (const auto &place : places) {
        const QString folder = base + QLatin1String(place.folder);
        QDir().mkpath(folder);
        qputenv(place.variable, QFile::encodeName(folder));
    }
}
