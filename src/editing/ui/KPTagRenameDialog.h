#pragma once

#include "KPTagPlan.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

// Asks for a tag's new name and shows what renaming it would change. Threads: main.
class KPTagRenameDialog : public QDialog
{
    Q_OBJECT

public:
    KPTagRenameDialog(const QString &tag, QWidget *window);

    void start(); // opens it
    // What the last previewWanted() asked for; others are passed over.
    void showPreview(const KPTagPlan &plan);
    // How many documents where, and what else is to be known.
    static QString describe(const KPTagPlan &plan);

Q_SIGNALS:
    void previewWanted(const KPTagRename &rename);
    void agreed(const KPTagPlan &plan);

private:
    KPTagRename wanted() const;
    void edited();
    void offerSpellings(const QStringList &spellings);

    const QString m_tag;
    QLineEdit *m_name;
    QLabel *m_preview;
    QLabel *m_merge;
    QListWidget *m_spellings; // those that can be merged with it
    QPushButton *m_rename;
    std::optional<KPTagPlan> m_plan;
    QStringList m_offered;
};
