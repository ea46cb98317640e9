#pragma once

#include "Karvex.h"
#include "TestHome.h"
#include "UserDefaults.h"
#include "XPFileInfo.h"
#include "XPFiledDocuments.h"
#include "XPFolders.h"
#include "XPNotificationCenter.h"
#include "XPPath.h"
#include "XPPrompts.h"
#include "XPTranslations.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>
#include <vector>

// A managed folder of its own for one test, in use, empty and without pauses.
class FiledFolder : public testing::Test
{
public:
    ~FiledFolder() override
    {
        UserDefaults::standard().remove(XPFiledDocuments::preferredPathKey);
        XPFiledDocuments::rebuildFiledDocsPath();
    }

protected:
    FiledFolder()
    {
        XPFiledDocuments::setPacing({});
        static const bool hasTexts = [] {
            xpGuiThread.assertHere();
            XPTranslations::install(QLocale(QLocale::English));
            return true;
        }();
        (void)hasTexts;
        for (const QString &key :
             {XPFiledDocuments::preferredPathKey, XPFiledDocuments::useYearMonthKey,
              XPFiledDocuments::askKey, XPFiledDocuments::alwaysFileKey})
            UserDefaults::standard().remove(key);
        setFlag(XPFiledDocuments::askKey, true);
        QDir().mkpath(m_folder.path(QStringLiteral("Filed")));
        XPFiledDocuments::setFiledDocumentsPreferredPath(m_folder.path(QStringLiteral("Filed")));
        m_root = XPFiledDocuments::filedDocumentsRoot();
    }

    static void setFlag(const QString &key, bool on)
    {
        UserDefaults::standard().setValue(key, PropertyValue::boolean(on));
    }
    static bool exists(const QString &path) { return XPFileInfo::read(path).hasValue(); }
    static QByteArray bytesOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
    }
    QString filed(const char *name) const { return m_root + u'/' + QString::fromUtf8(name); }
    // Today's folder.
    QString today(const char *name) const
    {
        return m_root + u'/' + XPFiledDocuments::datedFolder(QDateTime::currentDateTime()) + u'/' +
               QString::fromUtf8(name);
    }
    QString file(const char *name, const QByteArray &bytes = "x") const
    {
        return m_folder.file(QString::fromUtf8(name), bytes);
    }

    const TestFolder m_folder;
    QString m_root;
    const QDateTime m_day{{2013, 6, 14}, {12, 0}};
};

// Answers questions by a list, and keeps what was said.
class ScriptedPrompts : public XPPrompts
{
public:
    struct Said
    {
        QList<Question> questions;
        QStringList alerts; // title, a line end, text
        std::vector<int> answers;
    };
    explicit ScriptedPrompts(std::shared_ptr<Said> said) : m_said(std::move(said)) {}

    void ask(const Question &question, std::function<void(int)> answer) override
    {
        m_said->questions.append(question);
        int button = question.cancelButton;
        if (!m_said->answers.empty()) {
            button = m_said->answers.front();
            m_said->answers.erase(m_said->answers.begin());
        }
        answer(button);
    }
    void alert(const QString &title, const QString &text) override
    {
        m_said->alerts.append(title + u'\n' + text);
    }

    static std::shared_ptr<Said> install(std::vector<int> answers)
    {
        xpGuiThread.assertHere();
        auto said = std::make_shared<Said>();
        said->answers = std::move(answers);
        XPPrompts::install(std::make_unique<ScriptedPrompts>(said));
        return said;
    }

private:
    std::shared_ptr<Said> m_said;
};
