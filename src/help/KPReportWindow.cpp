#include "KPReportWindow.h"

#include "KPLook.h"
#include "UserDefaults.h"
#include "XPAtomicFile.h"
#include "XPFactorySettings.h"
#include "XPFolders.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSysInfo>
#include <QUrl>
#include <QUrlQuery>
#include <QVBoxLayout>

static constexpr QSize usualSize{640, 560};

// Settings that hold paths, tags or what was searched stay the user's own.
static QString valueText(const XPSetting &setting, const PropertyValue &value)
{
    using Kind = XPSetting::Kind;
    switch (setting.kind) {
    case Kind::Bool:
        return value.boolValue() ? QStringLiteral("true") : QStringLiteral("false");
    case Kind::Integer:
    case Kind::Real:
        return QString::number(value.doubleValue());
    default:
        return QStringLiteral("…");
    }
}

QString KPReportWindow::facts(const QStringList &index)
{
    QStringList lines = {QStringLiteral("Murn ") + QCoreApplication::applicationVersion(),
                         QStringLiteral("Qt ") + QLatin1String(qVersion()),
                         QSysInfo::prettyProductName() + QStringLiteral(", ") +
                             QSysInfo::kernelType() + u' ' + QSysInfo::kernelVersion() +
                             QStringLiteral(", ") + QSysInfo::currentCpuArchitecture(),
                         QGuiApplication::platformName() + QStringLiteral(", ") +
                             qEnvironmentVariable("XDG_CURRENT_DESKTOP", QStringLiteral("-")) +
                             QStringLiteral(", ") + QLocale::system().name()};
    for (const QScreen *screen : QGuiApplication::screens())
        lines.append(QStringLiteral("%1 × %2, %3")
                         .arg(screen->size().width())
                         .arg(screen->size().height())
                         .arg(screen->devicePixelRatio()));
    lines += index;
    for (const XPSetting &setting : XPFactorySettings::all()) {
        const PropertyValue value = UserDefaults::standard().value(setting.key);
        if (value != setting.factory)
            lines.append(setting.key + QStringLiteral(" = ") + valueText(setting, value));
    }
    return lines.join(u'\n');
}

KPReportWindow::KPReportWindow(const QStringList &index, QWidget *parent)
    : QDialog(parent), m_text(new QPlainTextEdit), m_done(new QLabel)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(qtTrId("KPReportTitle"));
    resize(usualSize);
    auto *title = new QLabel(qtTrId("KPReportTitle"));
    title->setFont(KPLook::font(KPLook::Type::Title));
    auto *hint = new QLabel(qtTrId("KPReportHint"));
    hint->setWordWrap(true);
    m_text->setAccessibleName(qtTrId("KPReportTitle"));
    m_text->setPlainText(qtTrId("KPReportQuestions") + QStringLiteral("\n\n---\n") + facts(index));
    m_done->setTextFormat(Qt::PlainText);
    m_done->setForegroundRole(QPalette::PlaceholderText);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addWidget(m_done, 1);
    const auto add = [&](const QString &text, void (KPReportWindow::*act)()) {
        auto *button = new QPushButton(text);
        button->setAutoDefault(false);
        buttons->addWidget(button);
        connect(button, &QPushButton::clicked, this, act);
    };
    add(qtTrId("KPReportCopy"), &KPReportWindow::copy);
    add(qtTrId("KPReportSave"), &KPReportWindow::save);
    add(qtTrId("KPReportMail"), &KPReportWindow::mail);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(24, 24, 24, 16);
    column->setSpacing(12);
    column->addWidget(title);
    column->addWidget(hint);
    column->addWidget(m_text, 1);
    column->addLayout(buttons);
    m_text->setFocus();
}

void KPReportWindow::copy()
{
    QGuiApplication::clipboard()->setText(m_text->toPlainText());
    m_done->setText(qtTrId("KPReportCopied"));
}

void KPReportWindow::save()
{
    auto *dialog = new QFileDialog(this, qtTrId("KPReportSave"), XPFolders::documents());
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("txt"));
    dialog->selectFile(qtTrId("KPReportFileName"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) {
        const auto error = XPAtomicFile::write(path, m_text->toPlainText().toUtf8());
        m_done->setText(error ? error->reason() : qtTrId("KPReportSaved"));
    });
    dialog->open();
}

// To nobody yet: whom it goes to is for the user to say.
void KPReportWindow::mail()
{
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("subject"),
                       QStringLiteral("Murn ") + QCoreApplication::applicationVersion());
    query.addQueryItem(QStringLiteral("body"),
                       QString::fromLatin1(QUrl::toPercentEncoding(m_text->toPlainText())));
    QUrl url(QStringLiteral("mailto:"));
    url.setQuery(query);
    const bool isOpened = QDesktopServices::openUrl(url);
    m_done->setText(isOpened ? QString() : qtTrId("KPReportNoMail"));
}
