#pragma once

#include <QDialog>

class KPDoc;
class QLineEdit;
class QListWidget;
class QPushButton;

// Asks for the order of the documents that become one, and for its name. Rows are dragged, or moved
// by the buttons and Alt with the arrows. Threads: main.
class KPCombineDialog : public QDialog
{
    Q_OBJECT

public:
    // `leftOut`: how many of the selected cannot be combined, which is said.
    KPCombineDialog(const QList<KPDoc *> &docs, qsizetype leftOut, QWidget *parent = nullptr);

    QStringList paths() const; // in the order chosen
    QString name() const;      // without an extension

private:
    void addRows(const QList<KPDoc *> &docs);
    QWidget *makeButtons();
    void moveRow(int by);
    void removeRow();
    void sortByName();
    void check();

    QListWidget *m_list;
    QLineEdit *m_name;
    QPushButton *m_up, *m_down, *m_remove, *m_sort, *m_combine;
};
