#pragma once

#include "KPDoc.h"
#include "KPDocumentTargets.h"
#include "XPProgress.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QTest>
#include <QWidget>
#include <algorithm>
#include <gtest/gtest.h>

// What commands on documents are given by a window.
class TestTargets : public KPDocumentTargets
{
public:
    QList<KPDoc *> documents() const override { return docs; }
    qsizetype documentCount() const override { return docs.size(); }
    QWidget *window() const override { return parent; }
    void filesMovedOrDeleted() override { ++told; }

    KPDoc::Docs docs;
    QWidget *parent = nullptr;
    int told = 0;
};

// Stops the piece of work with the number `stopped`, from 1, as soon as it is begun.
struct TestProgress : public XPProgress
{
    static TestProgress *install()
    {
        xpGuiThread.assertHere();
        auto ours = std::make_unique<TestProgress>();
        auto *progress = ours.get();
        XPProgress::install(std::move(ours));
        return progress;
    }
    void begin(const Task &task) override
    {
        last = task;
        ++shown;
        task->isStopAsked = ++begun == stopped;
    }
    void end(const Task & /*task*/) override { --shown; }

    int begun = 0;
    int shown = 0;
    int stopped = 0;
    Task last;
};

// The dialog of that kind that is open over a window; null: none.
template <typename Dialog>
Dialog *openDialog(const QWidget &window)
{
    const auto dialogs = window.findChildren<Dialog *>();
    const auto shown = std::find_if(dialogs.begin(), dialogs.end(),
                                    [](const Dialog *each) { return each->isVisible(); });
    return shown == dialogs.end() ? nullptr : *shown;
}

// Types a path into the dialog for files that is open.
inline void chooseFile(const QWidget &window, const QString &path)
{
    auto *dialog = openDialog<QFileDialog>(window);
    ASSERT_TRUE(dialog);
    auto *name = dialog->findChild<QLineEdit *>();
    ASSERT_TRUE(name);
    name->setText(path);
    QTest::keyClick(name, Qt::Key_Return);
    ASSERT_TRUE(openDialog<QFileDialog>(window) != dialog) << path.toStdString();
}
