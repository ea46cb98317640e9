#pragma once

#include <QPlainTextEdit>

// A comment to be edited where it stands, as high as its text. Leaving the field and Ctrl+Return
// take what was typed, Escape puts back what was there.
// Threads: main.
class KPCommentField : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit KPCommentField(QWidget *parent = nullptr);

    // `differs`: of several documents that have not the same one. What is being typed stays.
    void setComment(const QString &comment, bool differs);
    // Takes what was typed, if it is something else.
    void commit();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    void commented(const QString &comment);
    void left(); // Escape

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QString m_comment;
};
