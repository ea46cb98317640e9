#include "XPPrompts.h"

#include "XPLog.h"
#include "XPMutex.h"

namespace {

class NobodyToAsk : public XPPrompts
{
public:
    void ask(const Question &question, std::function<void(int)> answer) override
    {
        answer(question.cancelButton);
    }
    void alert(const QString &title, const QString &text) override
    {
        qCWarning(xpLog).noquote() << title << text;
    }
};

} // namespace

static std::unique_ptr<XPPrompts> &installed()
{
    static std::unique_ptr<XPPrompts> prompts = std::make_unique<NobodyToAsk>();
    return prompts;
}

XPPrompts &XPPrompts::current()
{
    xpGuiThread.assertHere();
    return *installed();
}

void XPPrompts::install(std::unique_ptr<XPPrompts> prompts)
{
    xpGuiThread.assertHere();
    installed() = prompts ? std::move(prompts) : std::make_unique<NobodyToAsk>();
}
