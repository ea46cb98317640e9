#include "KPPrompts.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>

KPPrompts::KPPrompts(QWidget *window) : m_window(window)
{
}

namespace {

// A message box without a button to cancel would not close by Escape and the close button.
class Box : public QMessageBox
{
public:
    using QMessageBox::QMessageBox;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->matches(QKeySequence::Cancel) && escapeButton() == nullptr)
            reject();
        else
            QMessageBox::keyPressEvent(event);
    }
    void closeEvent(QCloseEvent *event) override
    {
        if (escapeButton() == nullptr)
            reject();
        else
            QMessageBox::closeEvent(event);
    }
};

} // namespace

// Over the window in front: a box of another one would hide it. Not over a dialog, which may be
// about to go, and the box with it.
static QWidget *windowInFront(QWidget *usual)
{
    QWidget *active = QApplication::activeWindow();
    return active && active->windowType() == Qt::Window ? active : usual;
}

static QMessageBox *makeBox(QWidget *window, QMessageBox::Icon icon, const QString &title,
                            const QString &text)
{
    auto *box = new Box(icon, QGuiApplication::applicationDisplayName(), title,
                        QMessageBox::NoButton, windowInFront(window));
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(text);
    box->setWindowModality(Qt::WindowModal);
    box->setAttribute(Qt::WA_DeleteOnClose);
    return box;
}

void KPPrompts::ask(const Question &question, std::function<void(int)> answer)
{
    // With one button nothing is asked: it is told that something was done.
    const auto icon =
        question.buttons.size() > 1 ? QMessageBox::Question : QMessageBox::Information;
    QMessageBox *box = makeBox(m_window, icon, question.title, question.text);
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
