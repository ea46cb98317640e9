#pragma once

#include <QDialog>

class QLabel;
class QPlainTextEdit;

// A report for those who make the program: what the user writes, and below it what the program
// knows of itself. The user sees every word, may change it, and sends it himself: the program
// sends nothing.
// Threads: main. It deletes itself when closed.
class KPReportWindow : public QDialog
{
    Q_OBJECT

public:
    // `index`: the state of the index in words.
    KPReportWindow(const QStringList &index, QWidget *parent);

    // Version, system, desktop, screens, and the settings that are not as they came; of these the
    // values only where they cannot name a document.
    static QString facts(const QStringList &index);

private:
    void copy();
    void save();
    void mail();

    QPlainTextEdit *m_text;
    QLabel *m_done;
};
