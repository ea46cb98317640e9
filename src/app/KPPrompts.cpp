#include "KPPrompts.h"

#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>

KPPrompts::KPPrompts(QWidget *window) : m_window(window)
{
}

static QMessageBox *makeBox(QWidget *window, QMessageBox::Icon icon, const QString &title,
                            const QString &text)
{
    auto *box = new QMessageBox(icon, QGuiApplication::applicationDisplayName(), title,
                                QMessageBox::NoButton, window);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(text);
    box->setWindowModality(Qt::WindowModal);
    box->setAttribute(Qt::WA_DeleteOnClose);
    return box;
}

void KPPrompts::ask(const Question &question, std::function<void(int)> answer)
{
    QMessageBox *box = makeBox(m_window, QMessageBox::Question, question.title, question.text);
    QList<QAbstractButton *> buttons;
    for (qsizetype number = 0; number < question.buttons.size(); ++number) {
        const bool cancels = number == question.cancelButton;
        QPushButton *button = box->addButton(
            question.buttons[number], cancels ? QMessageBox::RejectRole : QMessageBox::AcceptRole);
        buttons.append(button);
        if (number == 0)
            box->setDefaultButton(button);
        if (cancels)
            box->setEscapeButton(button);
    }
    // Closing the box by other means clicks no button of ours: that is the cancel.
    QObject::connect(box, &QDialog::finished, box,
                     [box, buttons, answer = std::move(answer), cancel = question.cancelButton] {
                         const qsizetype clicked = buttons.indexOf(box->clickedButton());
                         answer(clicked < 0 ? cancel : static_cast<int>(clicked));
                     });
    box->open();
}

void KPPrompts::alert(const QString &title, const QString &text)
{
    QMessageBox *box = makeBox(m_window, QMessageBox::Warning, title, text);
    box->addButton(QMessageBox::Ok);
    box->open();
}
