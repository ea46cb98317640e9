#include "IndexImporters.h"

#include "XPMutex.h"

namespace {

struct Factories
{
    XPMutex mutex;
    std::vector<IndexImporters::Factory> list XP_GUARDED_BY(mutex);
};

} // namespace

static Factories &factories()
{
    static Factories installed;
    return installed;
}

void IndexImporters::install(Factory factory)
{
    Factories &installed = factories();
    const XPLocker lock(installed.mutex);
    installed.list.insert(installed.list.begin(), std::move(factory));
}

IndexImporters::Importers IndexImporters::make(bool idle)
{
    std::vector<Factory> list;
    {
        Factories &installed = factories();
        const XPLocker lock(installed.mutex);
        list = installed.list;
    }
    Importers importers;
    for (const Factory &factory : list)
        importers.push_back(factory(idle));
    return importers;
}
