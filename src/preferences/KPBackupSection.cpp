#include "KPBackupSection.h"

#include "KarvexBackupFile.h"
#include "KarvexSync.h"
#include "UserDefaults.h"
#include "XPMainThread.h"
#include "XPPath.h"

#include <QDateTime>
#include <QLabel>
#include <QLocale>
#include <QPointer>
#include <QPushButton>
#include <QThreadPool>
#include <QVBoxLayout>

static const QString lastKey = QStringLiteral("KPLastBackup");

KPBackupSection::KPBackupSection(QWidget *parent)
    : QWidget(parent), m_text(new QLabel), m_backUp(new QPushButton(qtTrId("KPPrefBackUpNow")))
{
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    auto *restore = new QPushButton(qtTrId("KPPrefRestore"));
    auto *line = new QHBoxLayout;
    for (QPushButton *button : {m_backUp, restore}) {
        button->setAutoDefault(false);
        line->addWidget(button);
    }
    line->addStretch(1);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(m_text);
    column->addLayout(line);
    connect(m_backUp, &QPushButton::clicked, this, &KPBackupSection::backupAsked);
    connect(restore, &QPushButton::clicked, this, &KPBackupSection::restoreAsked);
    m_done = XPNotificationCenter::instance().addObserver(
        KarvexSync::doneNotification, [this](const XPNotification &) { look(); });
    m_time = UserDefaults::standard().addObserver(QStringLiteral("values.") + lastKey,
                                                  [this](const PropertyValue &) { refresh(); });
    look();
}

void KPBackupSection::showState(const QString &activity, const QString &problem)
{
    m_activity = activity;
    m_problem = problem;
    refresh();
}

void KPBackupSection::look()
{
    QThreadPool::globalInstance()->start([self = QPointer(this)] {
        const QString path = KarvexBackupFile::defaultPath();
        const auto bytes = KarvexBackupFile::readBytes(path);
        const auto records = bytes ? KarvexBackupFile::decode(*bytes, path)
                                   : XPResult<KarvexBackupFile::Records>(bytes.error());
        // One that cannot be read is not none.
        const bool isThere = records || records.error().kind != XPError::Kind::NotFound;
        const qint64 count = records ? records->size() : isThere ? -1 : 0;
        const QString unreadable =
            records || !isThere
                ? QString()
                : qtTrId("KPPrefBackupUnreadable").arg(XPPath::printable(records.error().reason()));
        xpOnMainThread([self, count, unreadable] {
            if (self) {
                self->m_records = count;
                self->m_unreadable = unreadable;
                self->refresh();
            }
        });
    });
    refresh();
}

void KPBackupSection::refresh()
{
    const QLocale locale;
    QStringList lines;
    if (m_records == 0)
        lines.append(qtTrId("KPPrefNoBackup"));
    else if (m_records > 0)
        lines.append(qtTrId("KPPrefBackupHolds", static_cast<int>(m_records))
                         .arg(locale.toString(m_records)));
    const double last = UserDefaults::standard().doubleValue(lastKey);
    if (last > 0 && m_records != 0) {
        const auto time = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(last));
        lines.append(qtTrId("KPPrefLastBackup").arg(locale.toString(time, QLocale::ShortFormat)));
    }
    for (const QString &more : {m_unreadable, m_activity, m_problem}) {
        if (!more.isEmpty())
            lines.append(more);
    }
    m_text->setText(lines.join(u'\n'));
    m_backUp->setEnabled(m_activity.isEmpty());
}
