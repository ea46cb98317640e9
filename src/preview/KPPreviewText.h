#pragma once

#include <QStackedWidget>

class QPlainTextEdit;
class QTableView;

// The words of a document, to be read and copied: running text, code in a font of equal widths, or
// a table where the text is one. Nothing in it is taken for markup.
// Threads: main.
class KPPreviewText : public QStackedWidget
{
    Q_OBJECT

public:
    explicit KPPreviewText(QWidget *parent = nullptr);

    // `tree`: the content type and what it conforms to.
    void setText(const QString &text, const QStringList &tree);
    void zoomBy(int steps);

private:
    QPlainTextEdit *m_text;
    QTableView *m_table;
};
