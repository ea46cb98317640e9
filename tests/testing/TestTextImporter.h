#pragma once

#include "IndexImporters.h"
#include "KPContentTypes.h"
#include "XPPath.h"

#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

// Takes UTF-8 files for what they are, and the first line of Markdown for its title: stands in for
// the importer's process where the index itself is tried. Including this installs it.
class TestTextImporter : public IndexImporter
{
public:
    bool accepts(const QString &type) const override
    {
        return type == markdown() ||
               KPContentTypes::conformsTo(type, QStringLiteral("public.plain-text")) ||
               KPContentTypes::conformsTo(type, QStringLiteral("public.source-code"));
    }
    XPResult<Content> import(const QByteArray &path, const QString &type,
                             const std::stop_token &) override
    {
        const int descriptor =
            ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
        struct stat facts = {};
        if (descriptor < 0 || ::fstat(descriptor, &facts) != 0)
            return XPError::fromErrno(errno, XPPath::decode(path));
        QFile file; // a name may be no text
        if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle) ||
            !S_ISREG(facts.st_mode))
            return XPError::make(XPError::Kind::Io, QStringLiteral("cannot be read"), {});
        Content content;
        content.text = file.read(1 << 20);
        content.modified = qint64{facts.st_mtim.tv_sec} * 1'000'000'000 + facts.st_mtim.tv_nsec;
        content.size = facts.st_size;
        content.inode = facts.st_ino;
        if (!content.text.isValidUtf8() || content.text.contains('\0'))
            content.text.clear();
        if (type == markdown() && content.text.startsWith("# "))
            content.attributes.insert(
                QStringLiteral("kMDItemTitle"),
                QString::fromUtf8(content.text.mid(2, content.text.indexOf('\n') - 2)).trimmed());
        return content;
    }

private:
    static QString markdown() { return QStringLiteral("net.daringfireball.markdown"); }
};

inline const bool testTextImporterIsInstalled = [] {
    IndexImporters::install([](bool) { return std::make_unique<TestTextImporter>(); });
    return true;
}();
