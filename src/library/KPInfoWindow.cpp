#include "KPInfoWindow.h"

#include "KPInspector.h"
#include "KPLibraryModel.h"

#include <QKeyEvent>
#include <QLocale>
#include <QVBoxLayout>
#include <chrono>

static constexpr QSize usualSize{300, 620};

KPInfoWindow::KPInfoWindow(const KPDoc::Docs &documents, KPQuickLook &pictures, QWidget *window)
    : QWidget(window, Qt::Dialog), m_documents(documents), m_view(new KPInspector),
      m_controller(std::make_unique<KPInspectorController>(*m_view, pictures))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName(QStringLiteral("KPInfoWindow"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_view);
    m_controller->setSource([this] { return present(); });
    connect(m_controller.get(), &KPInspectorController::shown, this, &KPInfoWindow::showTitle);
    connect(m_view, &KPInspector::left, this, qOverload<>(&QWidget::setFocus));
    m_changing.setSingleShot(true);
    m_changing.setInterval(std::chrono::milliseconds(100));
    connect(&m_changing, &QTimer::timeout, this, [this] { m_controller->update(m_documents); });
    for (const QString &name : {KPDoc::changingNotification, KPDoc::didChangeNotification,
                                KPDoc::refreshInfoWindowsNotification}) {
        m_observations.push_back(
            XPNotificationCenter::instance().addObserver(name, [this](const XPNotification &) {
                if (!m_changing.isActive())
                    m_changing.start();
            }));
    }
    resize(usualSize);
    m_controller->showLater();
}

KPInfoWindow::~KPInfoWindow()
{
    m_observations.clear();
    m_controller.reset();
}

KPDoc::Docs KPInfoWindow::present() const
{
    KPDoc::Docs documents = m_documents;
    documents.removeIf([](const KPDoc *doc) { return doc->isGone(); });
    return documents;
}

void KPInfoWindow::showTitle()
{
    const KPDoc::Docs documents = present();
    if (documents.isEmpty()) {
        close(); // the files are gone
        return;
    }
    const QString what = documents.size() == 1
                             ? KPLibraryModel::displayName(*documents.first())
                             : qtTrId("KPDocumentCount", static_cast<int>(documents.size()))
                                   .arg(QLocale().toString(documents.size()));
    setWindowTitle(qtTrId("KPInfoWindowTitle").arg(what));
}

void KPInfoWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close))
        close();
    else
        QWidget::keyPressEvent(event);
}
