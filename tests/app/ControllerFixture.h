#pragma once

#include "IndexSettings.h"
#include "KPArrangedDocs.h"
#include "KPController.h"
#include "KPDocIcons.h"
#include "KPDocMetaData.h"
#include "KPDocsView.h"
#include "KPEditJournal.h"
#include "KPIndexMonitor.h"
#include "KPInspector.h"
#include "KPQuickLook.h"
#include "KPSearcher.h"
#include "KPTagName.h"
#include "Karvex.h"
#include "TestHome.h"
#include "XPFactorySettings.h"
#include "XPPrompts.h"
#include "XPTagsEditor.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

struct Alerts : public XPPrompts
{
    explicit Alerts(QStringList *list) : alerts(list) {}
    void ask(const Question &question, std::function<void(int)> answer) override
    {
        answer(question.cancelButton);
    }
    void alert(const QString &title, const QString &text) override
    {
        alerts->append(title + u'\n' + text);
    }
    QStringList *alerts;
};

// The whole window on real files, driven by key events.
class Controller : public testing::Test
{
protected:
    void SetUp() override
    {
        KPTagName::intializeGlobals();
        KPDocMetaData::holdFilledValues();
        KPDocIcons::registerIcons();
        XPFactorySettings::registerAll();
        for (const auto &earlier : KPEditJournal::saved()) // of other tests of this process
            KPEditJournal::remove(earlier.file);
        IndexSettings::setRoots({m_folder.path()});
        xpGuiThread.assertHere();
        KPQuickLook::Setup looks;
        looks.maker.importer = MURN_IMPORTER;
        KPQuickLook::initializeGlobals(looks);
        XPPrompts::install(std::make_unique<Alerts>(&m_alerts));
        for (const char *name : {"a.txt", "b.pdf", "c.odt"})
            m_paths.append(m_folder.file(QString::fromLatin1(name)));
    }
    void TearDown() override
    {
        m_window.reset();
        m_monitor.reset();
        m_index.reset();
        XPPrompts::install(nullptr);
        xpGuiThread.assertHere();
        KPQuickLook::shutDown();
    }

    void makeWindow(const QString &folder)
    {
        m_index = MetadataIndex::open();
        m_monitor = std::make_unique<KPIndexMonitor>(*m_index);
        m_window =
            std::make_unique<KPController>(m_index->source(), QStringList{folder}, m_monitor.get());
        m_window->show();
        QApplication::setActiveWindow(m_window.get());
        m_view = m_window->findChild<KPDocsView *>();
    }
    void openWindow()
    {
        makeWindow(m_folder.path());
        m_tags = m_window->findChild<KPInspector *>()->findChild<XPTagsEditor *>();
        ASSERT_TRUE(until([&] { return rows() == 3 && m_window->isSettled(); }));
    }
    // Deadline, not a wait: returns as soon as it holds.
    static bool until(const std::function<bool()> &holds) { return QTest::qWaitFor(holds, 20'000); }
    int rows() const { return m_view->docs().count(); }
    qsizetype selectedCount() const { return m_view->docs().selection().count(); }
    void select(int row)
    {
        m_view->docs().selectRow(row);
        EXPECT_TRUE(until([&] { return m_window->isSettled(); }));
    }
    void run(const char *id) const
    {
        QAction *action = m_window->commands().action(id);
        ASSERT_TRUE(action) << id;
        action->trigger();
    }
    void typeTag(const QString &tag)
    {
        m_tags->focusEntry();
        QTest::keyClicks(m_tags->entry(), tag);
        QTest::keyClick(m_tags->entry(), Qt::Key_Return);
    }
    static QStringList tagsOf(const QString &path)
    {
        return Karvex::getUserTags(path).valueOr({QStringLiteral("(error)")});
    }
    static double ratingOf(const QString &path) { return Karvex::getRating(path).valueOr(-1); }

    const QString work = QStringLiteral("work");
    TestFolder m_folder;
    QStringList m_paths;
    QStringList m_alerts;
    std::unique_ptr<MetadataIndex> m_index;
    std::unique_ptr<KPIndexMonitor> m_monitor;
    std::unique_ptr<KPController> m_window;
    KPDocsView *m_view = nullptr;
    XPTagsEditor *m_tags = nullptr;
};
