#include "KPTagMirror.h"

#include "KPMirrorImport.h"
#include "KarvexMirror.h"
#include "MetadataIndex.h"
#include "UserDefaults.h"
#include "XPLog.h"
#include "XPPath.h"

using namespace std::chrono_literals;

// A writer sets one attribute after the other; ours does too.
static constexpr auto settling = 300ms;

KPTagMirror::KPTagMirror(MetadataIndex &index)
    : m_index(index), m_wasOn(KarvexMirror::isOn()),
      m_observation(UserDefaults::standard().addObserver(
          QStringLiteral("values.") + KarvexMirror::settingsKey,
          [this](const PropertyValue &value) {
              if (!std::exchange(m_wasOn, value.boolValue()) && m_wasOn)
                  switchedOn();
          }))
{
    m_thread = std::thread([this] { loop(); });
    m_index.setAttributesListener([this](const IndexAttributesChange &change) { take(change); });
}

KPTagMirror::~KPTagMirror()
{
    m_index.setAttributesListener({});
    m_stopping = true;
    {
        const XPLocker lock(m_mutex); // nobody is between his question and his sleep
    }
    m_wake.notify_all();
    m_thread.join();
}

void KPTagMirror::switchedOn()
{
    {
        const XPLocker lock(m_mutex);
        m_everything = true;
    }
    m_wake.notify_all();
}

void KPTagMirror::take(const IndexAttributesChange &change)
{
    if (!KarvexMirror::isOn() || KarvexFacts::agree(KarvexFacts::Pair::of(change.now)))
        return;
    // Another file, or one that nobody knew: neither side took anything off it.
    const auto base =
        change.isSameFile ? KarvexFacts::Pair::of(change.before) : KarvexFacts::Pair::of({});
    {
        const XPLocker lock(m_mutex);
        if (!m_files.contains(change.path))
            m_files.insert(change.path, base);
    }
    m_wake.notify_all();
}

// False: the end.
bool KPTagMirror::wait(Files &files, bool &everything)
{
    XPLocker lock(m_mutex);
    while (!m_stopping && m_files.isEmpty() && !m_everything)
        m_wake.wait(lock);
    const auto due = std::chrono::steady_clock::now() + settling;
    while (!m_stopping && std::chrono::steady_clock::now() < due)
        m_wake.wait_until(lock, due);
    files = std::exchange(m_files, {});
    everything = std::exchange(m_everything, false) && !m_stopping;
    return !files.isEmpty() || everything;
}

void KPTagMirror::loop()
{
    Files files;
    bool everything = false;
    while (wait(files, everything)) {
        for (auto file = files.cbegin(); file != files.cend(); ++file) {
            const auto outcome = KarvexMirror::reconcile(XPPath::decode(file.key()), *file);
            if (!outcome && outcome.error().kind != XPError::Kind::NotFound)
                qCWarning(xpLog).noquote()
                    << "the desktop's tags were not merged:" << outcome.error().message;
        }
        if (everything)
            KPMirrorImport::run(m_index.source(), false, [this](const KPMirrorImport::File &file) {
                if (file.error)
                    qCWarning(xpLog).noquote() << file.error->message;
                return !m_stopping;
            });
    }
}
