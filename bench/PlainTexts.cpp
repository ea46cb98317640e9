#include "PlainTexts.h"

#include "KPContentTypes.h"
#include "XPPath.h"

#include <QFile>
#include <sys/stat.h>

namespace {

class PlainTextImporter : public IndexImporter
{
public:
    bool accepts(const QString &type) const override
    {
        return KPContentTypes::conformsTo(type, QStringLiteral("public.text"));
    }
    XPResult<Content> import(const QByteArray &path, const QString &,
                             const std::stop_token &) override
    {
        QFile file(XPPath::decode(path));
        struct stat facts = {};
        if (!file.open(QIODevice::ReadOnly) || ::fstat(file.handle(), &facts) != 0)
            return XPError::make(XPError::Kind::NotFound, file.errorString(), file.fileName());
        return Content{.text = file.readAll(),
                       .attributes = {},
                       .modified =
                           qint64{facts.st_mtim.tv_sec} * 1'000'000'000 + facts.st_mtim.tv_nsec,
                       .size = facts.st_size,
                       .inode = facts.st_ino};
    }
};

} // namespace

std::atomic<bool> &XPBench::PlainTexts::isOn()
{
    static std::atomic<bool> on = false;
    return on;
}

std::unique_ptr<IndexImporter> XPBench::PlainTexts::importer()
{
    return std::make_unique<PlainTextImporter>();
}
