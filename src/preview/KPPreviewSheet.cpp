#include "KPPreviewSheet.h"

#include "KPDocsView.h"
#include "KPQuickLook.h"

#include <QKeyEvent>
#include <QVBoxLayout>

static constexpr double thumbnailWidth = 180;

KPPreviewSheet::KPPreviewSheet(KPQuickLook &pictures, QWidget *parent) : QWidget(parent)
{
    m_keys.handleKeyDown = [this](const QKeyEvent &event) {
        bool isTaken = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
        if (isTaken)
            Q_EMIT opened();
        else
            Q_EMIT keyPressed(event, &isTaken);
        return isTaken;
    };
    m_keys.removeOrDelete = [](bool) {}; // not from here
    m_keys.cancel = [] {};
    m_keys.scrollSelectionToVisible = [this] { m_view->scrollToRow(m_docs.selection().current()); };
    m_view = new KPDocsView(m_docs, pictures, m_keys);
    m_view->viewport()->setAcceptDrops(false);
    m_view->setThumbnailWidth(thumbnailWidth);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_view);
    setFocusProxy(m_view);
    connect(m_view, &KPDocsView::openRequested, this, &KPPreviewSheet::opened);
    connect(&m_docs, &KPArrangedDocs::selectionChanged, this, &KPPreviewSheet::currentChanged);
    connect(&m_docs, &KPArrangedDocs::scrollWanted, m_view, &KPDocsView::scrollToRow);
}

// The view uses what is here: it goes first.
KPPreviewSheet::~KPPreviewSheet()
{
    delete m_view;
}

void KPPreviewSheet::setDocuments(const KPDoc::Docs &docs)
{
    auto array = std::make_shared<KPDocArray>(docs.begin(), docs.end());
    KPDoc *before = current();
    m_docs.setArrangedObjects({std::move(array), nullptr}, true);
    KPDoc *now = docs.contains(before) ? before : docs.value(0);
    if (now && m_docs.singleSelection() != now)
        m_docs.setSelections({now}, true);
}

KPDoc *KPPreviewSheet::current() const
{
    KPDoc *current = m_docs.current();
    return current ? current : m_docs.count() > 0 ? m_docs.at(0) : nullptr;
}
