#include "KPTagRenameDialog.h"

#include "KPTagName.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

KPTagRenameDialog::KPTagRenameDialog(const QString &tag, QWidget *window)
    : QDialog(window), m_tag(tag), m_name(new QLineEdit(tag)), m_preview(new QLabel),
      m_merge(new QLabel), m_spellings(new QListWidget)
{
    setWindowTitle(qtTrId("KPTagRenameTitle"));
    setWindowModality(Qt::WindowModal);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 12);
    column->setSpacing(8);
    auto *label = new QLabel(qtTrId("KPTagRenameLabel").arg(XPPath::printable(tag)));
    label->setTextFormat(Qt::PlainText);
    label->setBuddy(m_name);
    m_preview->setTextFormat(Qt::PlainText);
    m_preview->setWordWrap(true);
    m_preview->setForegroundRole(QPalette::PlaceholderText);
    m_preview->setMinimumSize(360, 90);
    m_preview->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    column->addWidget(label);
    column->addWidget(m_name);
    column->addWidget(m_preview, 1);
    m_spellings->setAccessibleName(qtTrId("KPTagMergeSpellings"));
    m_spellings->setMaximumHeight(90);
    m_spellings->setFrameShape(QFrame::StyledPanel);
    m_merge->setText(qtTrId("KPTagMergeSpellings"));
    m_merge->setBuddy(m_spellings);
    column->addWidget(m_merge);
    column->addWidget(m_spellings);
    offerSpellings({});
    connect(m_spellings, &QListWidget::itemChanged, this, &KPTagRenameDialog::edited);
    auto *buttons = new QDialogButtonBox;
    m_rename = buttons->addButton(qtTrId("KPTagRenameButton"), QDialogButtonBox::AcceptRole);
    m_rename->setDefault(true);
    buttons->addButton(qtTrId("KPCancel"), QDialogButtonBox::RejectRole);
    column->addWidget(buttons);
    connect(m_name, &QLineEdit::textChanged, this, &KPTagRenameDialog::edited);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        if (m_plan)
            Q_EMIT agreed(*m_plan);
        accept();
    });
}

void KPTagRenameDialog::start()
{
    m_name->selectAll();
    edited();
    open();
}

KPTagRename KPTagRenameDialog::wanted() const
{
    const QStringList pieces = KPTagName::cleanUpTagStringArray({m_name->text()});
    KPTagRename rename{m_tag,
                       pieces.size() == 1 ? KPTagName::CleanAndTrimTag(pieces.first()) : QString()};
    for (int row = 0; row < m_spellings->count(); ++row) {
        if (m_spellings->item(row)->checkState() == Qt::Checked)
            rename.alsoFrom.append(m_offered.at(row));
    }
    return rename;
}

void KPTagRenameDialog::offerSpellings(const QStringList &spellings)
{
    m_merge->setVisible(!spellings.isEmpty());
    m_spellings->setVisible(!spellings.isEmpty());
    if (spellings == m_offered)
        return;
    const QSignalBlocker blocker(m_spellings);
    m_offered = spellings;
    m_spellings->clear();
    for (const QString &spelling : spellings) {
        auto *item = new QListWidgetItem(XPPath::printable(spelling), m_spellings);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Unchecked);
    }
}

void KPTagRenameDialog::edited()
{
    m_plan.reset();
    m_rename->setEnabled(false);
    const KPTagRename rename = wanted();
    if (rename.to.isEmpty())
        m_preview->setText(qtTrId("KPTagRenameOneTag"));
    else
        Q_EMIT previewWanted(rename);
}

void KPTagRenameDialog::showPreview(const KPTagPlan &plan)
{
    if (plan.rename != wanted())
        return;
    offerSpellings(plan.otherSpellings);
    if (plan.rename != wanted()) { // one that was ticked is offered no more
        edited();
        return;
    }
    m_plan = plan;
    m_preview->setText(describe(plan));
    m_rename->setEnabled(!plan.isEmpty() &&
                         (plan.rename.to != plan.rename.from || !plan.rename.alsoFrom.isEmpty()));
}

QString KPTagRenameDialog::describe(const KPTagPlan &plan)
{
    constexpr qsizetype mostPlaces = 4;
    const QLocale locale;
    const qsizetype count = plan.paths.size() + plan.away.size();
    QStringList lines{
        qtTrId("KPTagPlanCount", static_cast<int>(count)).arg(locale.toString(count))};
    for (const auto &place : plan.places.first(std::min(mostPlaces, plan.places.size())))
        lines.append(qtTrId("KPTagPlanPlace")
                         .arg(XPPath::printable(XPFolders::abbreviateWithTilde(place.folder)),
                              locale.toString(place.count)));
    if (const auto more = static_cast<int>(plan.places.size() - mostPlaces); more > 0)
        lines.append(qtTrId("KPAndMore", more));
    if (!plan.away.isEmpty())
        lines.append(qtTrId("KPTagPlanAway", static_cast<int>(plan.away.size()))
                         .arg(locale.toString(plan.away.size())));
    if (plan.isMerge)
        lines.append(qtTrId("KPTagPlanMerge").arg(XPPath::printable(plan.rename.to)));
    if (!plan.otherSpellings.isEmpty())
        lines.append(qtTrId("KPTagPlanSpellings")
                         .arg(XPPath::printable(plan.otherSpellings.join(QStringLiteral(", ")))));
    return lines.join(u'\n');
}
