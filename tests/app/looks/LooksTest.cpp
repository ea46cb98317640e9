#include "ControllerFixture.h"
#include "KPAppearance.h"
#include "KPDateRangeDialog.h"
#include "KPPreferencesWindow.h"
#include "KPTagRenameDialog.h"
#include "KPToolBarDialog.h"
#include "KPWelcome.h"
#include "PseudoLanguage.h"
#include "WindowFaults.h"
#include "XPFolders.h"
#include "XPScanController.h"
#include "XPTranslations.h"

#include <QDialog>
#include <QDir>

namespace {

// One way in which somebody uses the program.
struct Way
{
    const char *name;
    const char *language; // "" is the pseudo-language, mirrored
    double textSize;      // of the desktop's
    KPCommandLine::ColourScheme colours;
};

using Colours = KPCommandLine::ColourScheme;

void useWay(const Way &way)
{
    const QByteArray language = way.language;
    if (language.isEmpty()) {
        QCoreApplication::installTranslator(new PseudoLanguage);
        QApplication::setLayoutDirection(Qt::RightToLeft);
    } else {
        XPTranslations::install(QLocale(QString::fromLatin1(language)));
    }
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * way.textSize);
    QApplication::setFont(font);
}

} // namespace

class Looks : public Controller, public testing::WithParamInterface<Way>
{
protected:
    void SetUp() override
    {
        useWay(GetParam());
        m_colours = std::make_unique<KPAppearance>(GetParam().colours);
        Controller::SetUp();
    }
    // Documents whose place reads the same each time, so that pictures can be compared.
    void openLibrary()
    {
        const QString folder = XPFolders::home() + QStringLiteral("/Documents");
        QDir().mkpath(folder);
        m_paths.clear();
        for (const char *name : {"Contract.odt", "Invoice.pdf", "Notes.txt"}) {
            m_paths.append(folder + u'/' + QString::fromLatin1(name));
            QFile file(m_paths.last());
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write("x");
        }
        IndexSettings::setRoots({folder});
        makeWindow(folder);
        m_tags = m_window->findChild<KPInspector *>()->findChild<XPTagsEditor *>();
        ASSERT_TRUE(until([&] { return rows() == 3 && m_window->isSettled(); }));
    }
    // For tools/shots, which compares them with those that are kept.
    void takePicture(QWidget *window)
    {
        const QString folder = qEnvironmentVariable("MURN_SHOTS");
        if (folder.isEmpty())
            return;
        const QString kind = QString::fromLatin1(window->metaObject()->className());
        const QString name = QStringLiteral("%1-%2-%3.png")
                                 .arg(QString::fromLatin1(GetParam().name), kind)
                                 .arg(++m_pictures[kind]);
        EXPECT_TRUE(window->grab().save(folder + u'/' + name));
    }
    void look(QWidget *window)
    {
        window->ensurePolished();
        for (int round = 0; round < 3; ++round) // labels that wrap ask for their height late
            QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        takePicture(window);
        m_faults += WindowFaults::cutTexts(window);
        m_faults += WindowFaults::namelessControls(window);
        m_faults += WindowFaults::faintTexts(window);
    }
    // One of our own making.
    void lookAt(std::unique_ptr<QWidget> window)
    {
        window->show();
        look(window.get());
    }
    // What a command opens; it is closed again.
    void lookAtCommand(const char *id)
    {
        const QWidgetList before = QApplication::topLevelWidgets();
        QAction *action = m_window->commands().action(id);
        ASSERT_TRUE(action) << id;
        action->trigger();
        bool wasSeen = false;
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (!window->isVisible() || before.contains(window))
                continue;
            wasSeen = true;
            look(window);
            window->close();
        }
        EXPECT_TRUE(wasSeen) << id;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    std::unique_ptr<KPAppearance> m_colours;
    QStringList m_faults;
    QHash<QString, int> m_pictures; // how many of each kind of window
};

TEST_P(Looks, EverythingCanBeRead)
{
    openLibrary();
    m_window->resize(1400, 900);
    for (const char *panel : {"KPTagPanelShown", "KPLocationsPanelShown", "KPInspectorShown"})
        if (QAction *action = m_window->commands().action(panel); action && !action->isChecked())
            action->trigger();
    select(0);
    typeTag(work);
    EXPECT_TRUE(until([&] { return m_window->isSettled() && tagsOf(m_paths[0]).contains(work); }));
    look(m_window.get());

    for (const char *id :
         {"KPHistoryList", "KPShortcuts", "KPAbout", "KPReport", "KPTagPanel", "KPTagSearchCommand",
          "KPAllTags", "KPFindDuplicates", "KPCustomiseToolbar", "KPCaptureWebPage"})
        lookAtCommand(id);

    lookAt(std::make_unique<KPWelcome>(m_window.get()));
    lookAt(std::make_unique<KPDateRangeDialog>(m_window.get()));
    lookAt(std::make_unique<KPTagRenameDialog>(work, m_window.get()));
    lookAt(std::make_unique<XPScanController>(
        XPScanController::Hooks{.filed = [](const QString &) {},
                                .knownTags = [] { return QStringList(); },
                                .scannerProgram = QByteArrayLiteral("/bin/false")}));
    using Page = XPSetting::Page;
    KPPreferencesWindow preferences({.index = m_monitor.get(),
                                     .backUp = [] {},
                                     .restore = [](QWidget *) {},
                                     .rebuildIndex = [] {}});
    preferences.show();
    for (int page = int(Page::Library); page <= int(Page::Privacy); ++page) {
        preferences.showPage(Page(page));
        look(&preferences);
    }
    m_faults.removeDuplicates();
    EXPECT_TRUE(m_faults.isEmpty()) << m_faults.join(u'\n').toStdString();
}

INSTANTIATE_TEST_SUITE_P(Ways, Looks,
                         testing::Values(Way{"Light", "en", 1, Colours::Light},
                                         Way{"Dark", "en", 1, Colours::Dark},
                                         Way{"German", "de", 1, Colours::Light},
                                         Way{"Mirrored", "", 1, Colours::Dark},
                                         Way{"LargeText", "en", 2, Colours::Light}),
                         [](const auto &way) { return std::string(way.param.name); });
