#pragma once

#include <QLineEdit>

class KPDoc;

// A document's name while it is edited where it stands. What people change is the name: the
// extension is there, but not selected. Enter and leaving the field take what was typed, Escape
// does not; an empty or hidden name is none.
// Threads: main.
class KPNameField : public QLineEdit
{
    Q_OBJECT

public:
    explicit KPNameField(QWidget *parent);

    void start(KPDoc *doc);
    KPDoc *doc() const { return m_doc; } // null: nothing is edited
    void stop();                         // without taking it

    // The name as a field shows it, and as what was typed would be.
    static QString shownName(const KPDoc &doc);
    static void selectBaseName(QLineEdit &field, const QString &name);
    // Nothing: the name stays as it is.
    static std::optional<QString> newName(const KPDoc &doc, const QString &typed);

Q_SIGNALS:
    void renamed(KPDoc *doc, const QString &name);
    void ended();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void commit();

    KPDoc *m_doc = nullptr;
};
