#include "KarvexTagStore.h"

#include "Karvex.h"
#include "KarvexErrors.h"

namespace {

class AttributeTagStore : public KarvexTagStore
{
public:
    QString searchKey() const override { return Karvex::userTagsKey; }

    XPResult<QStringList> read(const QString &path) const override
    {
        const auto value = Karvex::getXAttrMetaData(Karvex::userTagsKey, path);
        if (!value)
            return value.error();
        if (value->isNull())
            return QStringList();
        if (!value->isArrayOfStrings())
            return KarvexErrors::wrongKind(path);
        return value->strings();
    }

    std::optional<XPError> write(const QStringList &tags, const QString &path) const override
    {
        return Karvex::setXAttrMetaData(tags, Karvex::userTagsKey, path);
    }
};

} // namespace

static std::unique_ptr<KarvexTagStore> &installedNative()
{
    static std::unique_ptr<KarvexTagStore> store;
    return store;
}

const KarvexTagStore &KarvexTagStore::attribute()
{
    static const AttributeTagStore store;
    return store;
}

const KarvexTagStore *KarvexTagStore::native()
{
    return installedNative().get();
}

const KarvexTagStore &KarvexTagStore::current()
{
    return native() ? *native() : attribute();
}

void KarvexTagStore::installNative(std::unique_ptr<KarvexTagStore> store)
{
    installedNative() = std::move(store);
}
