#include "KPWebCapture.h"

#include "KPDocServices.h"
#include "XPFilingWork.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPWebPages.h"

#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <chrono>

using namespace std::chrono_literals;

// Only what is an address with a scheme: any word could be one without.
static QString copiedAddress()
{
    constexpr qsizetype longest = 2000;
    const QString text = QGuiApplication::clipboard()->text().trimmed();
    return text.size() <= longest && text.startsWith(u"http") ? text : QString();
}

static QDialog *makeDialog(QWidget *window, QLineEdit *field)
{
    auto *dialog = new QDialog(window);
    dialog->setWindowTitle(qtTrId("KPCaptureTitle"));
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    auto *label = new QLabel(qtTrId("KPCaptureAddress"));
    label->setBuddy(field);
    field->setAccessibleName(qtTrId("KPCaptureAddress"));
    field->setPlaceholderText(QStringLiteral("https://"));
    constexpr int width = 440;
    field->setMinimumWidth(width);
    auto *buttons = new QDialogButtonBox;
    QPushButton *go = buttons->addButton(qtTrId("KPCaptureButton"), QDialogButtonBox::AcceptRole);
    // Last: Tab would pass over it otherwise.
    buttons->addButton(qtTrId("KPCancel"), QDialogButtonBox::RejectRole);
    const auto check = [field, go] {
        go->setEnabled(XPURLToPDF::addressFrom(field->text()).has_value());
    };
    QObject::connect(field, &QLineEdit::textChanged, go, check);
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    check();
    auto *column = new QVBoxLayout(dialog);
    column->setContentsMargins(24, 24, 24, 16);
    column->setSpacing(12);
    column->addWidget(label);
    column->addWidget(field);
    column->addWidget(buttons);
    return dialog;
}

void KPWebCapture::ask(QWidget *window, const QString &address)
{
    auto *field = new QLineEdit(address.isEmpty() ? copiedAddress() : address);
    QDialog *dialog = makeDialog(window, field);
    connect(dialog, &QDialog::accepted, window, [window, field] {
        xpGuiThread.assertHere();
        if (const auto chosen = XPURLToPDF::addressFrom(field->text()))
            (new KPWebCapture(window))->start(*chosen);
    });
    field->selectAll();
    dialog->open();
}

KPWebCapture::KPWebCapture(QObject *parent)
    : QObject(parent), m_capture(XPURLToPDF::Options::fromSettings())
{
    connect(&m_capture, &XPURLToPDF::captured, this, [this](const XPURLToPDF::Page &page) {
        xpGuiThread.assertHere();
        captured(page);
    });
    connect(&m_capture, &XPURLToPDF::failed, this, [this](const XPError &error) {
        xpGuiThread.assertHere();
        failed(error);
    });
}

void KPWebCapture::start(const QString &address)
{
    m_address = address;
    m_task = std::make_shared<XPProgressTask>();
    m_task->title = qtTrId("KPCaptureProgress");
    m_task->note = XPPath::printable(address);
    XPProgress::current().begin(m_task);
    connect(&m_stop, &QTimer::timeout, this, [this] {
        if (!m_task->isStopAsked)
            return;
        XPProgress::current().end(m_task);
        deleteLater();
        m_stop.stop();
    });
    m_stop.start(100ms);
    m_capture.start(address);
}

void KPWebCapture::captured(const XPURLToPDF::Page &page)
{
    m_stop.stop();
    XPProgress::current().end(m_task);
    deleteLater();
    XPFilingWork::run([page] { return XPWebPages::file(page.pdf, page.title, page.url); },
                      [](const XPResult<QString> &path) {
                          xpGuiThread.assertHere();
                          if (!path) {
                              XPPrompts::current().alert(qtTrId("KPCaptureFailed"),
                                                         path.error().reason());
                              return;
                          }
                          KPDocServices::current().documentsImported({*path});
                          KPDocServices::current().revealInLibrary({*path});
                      });
}

void KPWebCapture::failed(const XPError &error)
{
    m_stop.stop();
    XPProgress::current().end(m_task);
    deleteLater();
    const bool isMissing = error.kind == XPError::Kind::Unsupported;
    XPPrompts::current().alert(qtTrId("KPCaptureFailed"), isMissing ? qtTrId("KPCaptureNoBrowser")
                                                                    : XPPath::printable(m_address) +
                                                                          QStringLiteral(": ") +
                                                                          error.reason());
}
