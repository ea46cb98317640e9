#pragma once

#include "KPDocumentFacts.h"

#include <QWidget>

class QLabel;

// Facts of a document, one a line: the name muted, the value beside it, to be selected and copied;
// a web address opens in the browser. Nothing in a value is taken for markup.
// Threads: main.
class KPFactsView : public QWidget
{
    Q_OBJECT

public:
    explicit KPFactsView(QWidget *parent = nullptr);

    void setFacts(const QList<KPDocumentFacts::Fact> &facts);
    bool isEmpty() const { return m_facts.isEmpty(); }

    // Paths may be cut after a slash and long words anywhere: they must not widen a pane.
    static QString breakable(const QString &text);

private:
    QList<KPDocumentFacts::Fact> m_facts;
    QList<QLabel *> m_labels;
};
