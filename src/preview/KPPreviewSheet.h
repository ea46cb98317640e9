#pragma once

#include "KPArrangedDocs.h"
#include "KPDocsKeys.h"

#include <QWidget>

class KPDocsView;
class KPQuickLook;

// The documents of a preview, as a sheet of small pictures: the grid over a set of its own, of
// which one is the current.
// Threads: main. The pictures outlive it.
class KPPreviewSheet : public QWidget
{
    Q_OBJECT

public:
    explicit KPPreviewSheet(KPQuickLook &pictures, QWidget *parent = nullptr);
    ~KPPreviewSheet() override;

    // Begins with the first, unless the current one is among them.
    void setDocuments(const KPDoc::Docs &docs);
    KPArrangedDocs &docs() { return m_docs; }
    KPDoc *current() const;

Q_SIGNALS:
    void currentChanged();
    void opened();                                          // the current is to be seen alone
    void keyPressed(const QKeyEvent &event, bool *isTaken); // before the sheet takes it

private:
    KPArrangedDocs m_docs;
    KPDocsKeys m_keys{m_docs};
    KPDocsView *m_view;
};
