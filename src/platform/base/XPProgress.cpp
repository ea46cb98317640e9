#include "XPProgress.h"

#include "XPMutex.h"

namespace {

class Nowhere : public XPProgress
{
public:
    void begin(const Task &) override {}
    void end(const Task &) override {}
};

} // namespace

static std::unique_ptr<XPProgress> &installed()
{
    static std::unique_ptr<XPProgress> progress = std::make_unique<Nowhere>();
    return progress;
}

XPProgress &XPProgress::current()
{
    xpGuiThread.assertHere();
    return *installed();
}

void XPProgress::install(std::unique_ptr<XPProgress> progress)
{
    xpGuiThread.assertHere();
    installed() = progress ? std::move(progress) : std::make_unique<Nowhere>();
}
