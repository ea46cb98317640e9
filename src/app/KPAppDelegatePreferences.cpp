// The preferences, and what they ask of the application.
#include "KPAppDelegate.h"
#include "KPController.h"
#include "KPIndexSession.h"
#include "KPPreferencesWindow.h"
#include "KPRestoreWindow.h"
#include "KPTagBackup.h"
#include "UserDefaults.h"
#include "XPPrompts.h"

#include <QApplication>

void KPAppDelegate::preferencesAction()
{
    showPreferences(XPSetting::Page::None);
}

// None: the page that was shown last.
void KPAppDelegate::showPreferences(XPSetting::Page page)
{
    if (!m_preferences) {
        m_preferences = std::make_unique<KPPreferencesWindow>(KPPreferencesWindow::Setup{
            .index = &m_index->monitor(),
            .backUp = [this] { m_backup->backUpNow(); },
            .restore = [this](QWidget *window) { restoreBackup(window); },
            .rebuildIndex = [this] { rebuildIndex(); }});
        m_preferences->setAttribute(Qt::WA_QuitOnClose, false);
        showBackup();
    }
    if (page != XPSetting::Page::None)
        m_preferences->showPage(page);
    m_preferences->show();
    m_preferences->raise();
    m_preferences->activateWindow();
}

void KPAppDelegate::showBackup()
{
    m_controller->showBackup(m_backup->activity(), m_backup->problem());
    if (m_preferences)
        m_preferences->showBackup(m_backup->activity(), m_backup->problem());
}

void KPAppDelegate::restoreBackup(QWidget *window)
{
    (new KPRestoreWindow(m_index->source(), window))->open(); // deletes itself
}

void KPAppDelegate::rebuildIndex()
{
    xpGuiThread.assertHere();
    XPPrompts::Question question;
    question.title = qtTrId("KPRebuildTitle");
    question.text = qtTrId("KPRebuildText");
    question.buttons = {qtTrId("KPRebuildNow"), qtTrId("KPRebuildLater"), qtTrId("KPCancel")};
    question.cancelButton = 2;
    XPPrompts::current().ask(question, [this](int button) {
        if (button == 2)
            return;
        UserDefaults::standard().setValue(QStringLiteral("KPRebuildIndex"),
                                          PropertyValue::boolean(true));
        m_startsAgain = button == 0;
        if (m_startsAgain)
            QApplication::quit();
    });
}
