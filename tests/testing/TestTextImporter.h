#pragma once

#include "IndexImporters.h"
#include "KPContentTypes.h"
#include "XPFileInfo.h"
#include "XPPath.h"

#include <QFile>
#include <fcntl.h>

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
        const auto info = XPFileInfo::read(XPPath::decode(path));
        if (!info)
            return info.error();
        QFile file; // a name may be no text
        const int descriptor = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
        if (!info->isRegular() ||
            !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
            return XPError::make(XPError::Kind::Io, QStringLiteral("cannot be read"), {});
        Content content{file.read(1 << 20), {}, info->modified, info->size};
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
