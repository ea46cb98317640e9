#include "KPInspectorController.h"

#include "KPDocMetaData.h"
#include "KPEditSummary.h"
#include "KPFileType.h"
#include "KPInspector.h"
#include "KPQuickLook.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QCoreApplication>
#include <QPointer>
#include <algorithm>
#include <chrono>
#include <cmath>

using namespace std::chrono_literals;

KPInspectorController::KPInspectorController(KPInspector &view, KPQuickLook &pictures,
                                             QObject *parent)
    : QObject(parent), m_view(view), m_pictures(pictures),
      m_reader(KPContentsReader::usualImporter())
{
    m_showing.setSingleShot(true);
    m_showing.setInterval(0);
    m_reading.setSingleShot(true);
    m_reading.setInterval(150ms);
    connect(&m_showing, &QTimer::timeout, this, &KPInspectorController::show);
    connect(&m_reading, &QTimer::timeout, this, &KPInspectorController::readContents);
    connect(&m_reader, &KPContentsReader::ready, this, &KPInspectorController::take);
    connect(&m_reader, &KPContentsReader::failed, this, [](const XPError &error) {
        xpGuiThread.assertHere();
        XPPrompts::current().alert(qtTrId("KPHealFailed"), KPEditSummary::reason(error));
    });
    connect(&m_view, &KPInspector::editRequested, this, &KPInspectorController::editRequested);
    connect(&m_view, &KPInspector::renameRequested, this, &KPInspectorController::renameRequested);
    connect(&m_view, &KPInspector::flagRequested, this, [](const QStringList &paths, bool flagged) {
        xpGuiThread.assertHere();
        KPDoc::setFlagged(paths, flagged);
    });
    connect(&m_view, &KPInspector::pageRequested, this, &KPInspectorController::turnTo);
    connect(&m_view, &KPInspector::healingDecided, &m_reader, &KPContentsReader::heal);
    connect(&m_view, &KPInspector::repairRequested, this, &KPInspectorController::askToRepair);
    connect(&m_pictures, &KPQuickLook::looksReady, this, [this](const QList<KPDoc *> &docs) {
        if (docs.contains(m_facts.isEmpty() ? nullptr : m_facts.documents().first()))
            showLater();
    });
}

KPInspectorController::~KPInspectorController() = default;

void KPInspectorController::update(const KPDoc::Docs &changed)
{
    m_facts.update(changed);
    if (changed.contains(m_doc))
        m_reading.start();
    showLater();
}

void KPInspectorController::show()
{
    const KPDoc::Docs documents = m_source ? m_source() : KPDoc::Docs();
    m_facts.setDocuments(documents);
    KPDoc *doc = documents.size() == 1 ? documents.first() : nullptr;
    const QString state = doc ? doc->cacheID() + doc->filePath() : QString();
    if (std::exchange(m_doc, doc) != doc) {
        m_page = 1;
        m_contents.reset();
    }
    if (std::exchange(m_state, state) != state)
        m_reading.start();
    KPInspector::Appearance appearance;
    std::vector<KPQuickLook::Wanted> wanted;
    std::vector<KPQuickLook::Wanted> next;
    if (!documents.isEmpty()) {
        KPDoc &first = *documents.first();
        const auto side =
            static_cast<int>(std::ceil(KPInspector::pictureSide * m_view.devicePixelRatioF()));
        wanted.push_back({&first, side, m_page});
        if (m_page > 1 || (doc && doc->pageCount() > 1))
            next.push_back({&first, side, m_page + 1});
        auto look = m_pictures.look(first, m_page);
        if (look.picture.isNull() && m_page > 1)
            look.picture = m_pictures.look(first).picture; // stays until the page is there
        appearance = {QPixmap::fromImage(look.picture),
                      look.uti.isEmpty()
                          ? KPFileType::preferredUTIForExtension(XPPath::extension(first.fsName()))
                          : look.uti,
                      m_page, m_contents};
    }
    m_pictures.want(&m_view, std::move(wanted), std::move(next));
    m_view.show(m_facts, appearance);
    Q_EMIT shown();
}

void KPInspectorController::turnTo(int page)
{
    m_page = page;
    showLater();
}

// What the index holds need not be read from the document once more.
void KPInspectorController::readContents()
{
    const QString path = m_doc && !m_doc->isGone() ? m_doc->filePath() : QString();
    m_reader.want(path, !path.isEmpty() && !KPDocMetaData::isIndexed(path));
}

void KPInspectorController::take(const KPContentsReader::ContentsPtr &contents)
{
    if (!m_doc || contents->path != m_doc->filePath())
        return;
    m_contents = contents;
    showLater();
}

void KPInspectorController::askToRepair(const QStringList &paths)
{
    xpGuiThread.assertHere();
    XPPrompts::current().ask({qtTrId("KPRepairTitle", static_cast<int>(paths.size())),
                              qtTrId("KPRepairText"),
                              {qtTrId("KPRepairButton"), qtTrId("KPCancel")},
                              1},
                             [self = QPointer(this), paths](int answer) {
                                 if (!self || answer != 0)
                                     return;
                                 KPFileEdit edit{paths, {}, {}};
                                 edit.repairs = true;
                                 Q_EMIT self->editRequested(edit);
                             });
}
