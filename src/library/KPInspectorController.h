#pragma once

#include "KPContentsReader.h"
#include "KPFileEdit.h"
#include "KPSelectionFacts.h"

#include <QTimer>
#include <functional>

class KPInspector;
class KPQuickLook;

// Feeds one inspector: gathers what its documents have in common, has the picture made of the page
// that is looked at, and what a single one says read; asks before it has attributes repaired.
//
// A burst of changes is shown once. Edits go out as signals, to whoever keeps the history.
// Threads: main. The view and the pictures outlive it.
class KPInspectorController : public QObject
{
    Q_OBJECT

public:
    KPInspectorController(KPInspector &view, KPQuickLook &pictures, QObject *parent = nullptr);
    ~KPInspectorController() override;

    // `documents` is asked when they are shown.
    void setSource(std::function<KPDoc::Docs()> documents) { m_source = std::move(documents); }
    // Others may be selected by now, or these have changed.
    void showLater() { m_showing.start(); }
    void update(const KPDoc::Docs &changed);
    bool isSettled() const { return !m_showing.isActive(); }
    const KPSelectionFacts &facts() const { return m_facts; }

Q_SIGNALS:
    void editRequested(const KPFileEdit &edit);
    void renameRequested(KPDoc *doc, const QString &name);
    void shown(); // what the documents are now

private:
    void show();
    void turnTo(int page);
    void readContents();
    void take(const KPContentsReader::ContentsPtr &contents);
    void askToRepair(const QStringList &paths);

    KPInspector &m_view;
    KPQuickLook &m_pictures;
    std::function<KPDoc::Docs()> m_source;
    KPSelectionFacts m_facts;
    KPDoc *m_doc = nullptr; // the only one
    QString m_state;        // of its file when it was read last
    int m_page = 1;
    KPContentsReader::ContentsPtr m_contents;
    QTimer m_showing;
    QTimer m_reading; // not while one only passes by
    KPContentsReader m_reader;
};
