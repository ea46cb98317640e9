#include "KPCombineDialog.h"

#include "KPDoc.h"
#include "KPDocIcons.h"
#include "KPNameOrder.h"
#include "XPPath.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <algorithm>

static constexpr int pathRole = Qt::UserRole;
static constexpr qsizetype longestName = 251; // bytes, before ".pdf"

static QString stemOf(const QString &name)
{
    const qsizetype length = XPPath::extension(name).size();
    return XPPath::printable(length > 0 ? name.chopped(length + 1) : name);
}

KPCombineDialog::KPCombineDialog(const QList<KPDoc *> &docs, qsizetype leftOut, QWidget *parent)
    : QDialog(parent), m_list(new QListWidget), m_name(new QLineEdit),
      m_up(new QPushButton(qtTrId("KPCombineUp"))),
      m_down(new QPushButton(qtTrId("KPCombineDown"))),
      m_remove(new QPushButton(qtTrId("KPCombineRemove"))),
      m_sort(new QPushButton(qtTrId("KPCombineSort")))
{
    setWindowTitle(qtTrId("KPCombineTitle"));
    resize(560, 440);
    QString hint = qtTrId("KPCombineHint");
    if (leftOut > 0)
        hint += u' ' + qtTrId("KPCombineLeftOut", static_cast<int>(leftOut));
    auto *label = new QLabel(hint);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    addRows(docs);
    if (!docs.isEmpty())
        m_name->setText(qtTrId("KPCombinedName").arg(stemOf(docs.first()->fsName())));
    m_name->setAccessibleName(qtTrId("KPCombineName"));
    auto *form = new QFormLayout;
    form->addRow(qtTrId("KPCombineName"), m_name);
    auto *middle = new QHBoxLayout;
    middle->addWidget(m_list, 1);
    middle->addWidget(makeButtons());
    auto *buttons = new QDialogButtonBox;
    m_combine = buttons->addButton(qtTrId("KPCombineButton"), QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel); // last: Tab would pass over it otherwise
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *column = new QVBoxLayout(this);
    column->addWidget(label);
    column->addLayout(middle, 1);
    column->addLayout(form);
    column->addWidget(buttons);
    connect(m_name, &QLineEdit::textChanged, this, &KPCombineDialog::check);
    connect(m_list, &QListWidget::currentRowChanged, this, &KPCombineDialog::check);
    connect(m_list->model(), &QAbstractItemModel::rowsMoved, this, &KPCombineDialog::check);
    check();
}

void KPCombineDialog::addRows(const QList<KPDoc *> &docs)
{
    m_list->setAccessibleName(qtTrId("KPCombineTitle"));
    m_list->setDragDropMode(QAbstractItemView::InternalMove);
    m_list->setAlternatingRowColors(true);
    for (const KPDoc *doc : docs) {
        auto *row = new QListWidgetItem(XPPath::printable(doc->fsDisplayName()), m_list);
        row->setData(pathRole, doc->filePath());
        row->setToolTip(XPPath::printable(doc->compactFilePath()).toHtmlEscaped());
    }
    m_list->setCurrentRow(0);
}

QWidget *KPCombineDialog::makeButtons()
{
    auto *side = new QWidget;
    auto *column = new QVBoxLayout(side);
    column->setContentsMargins(0, 0, 0, 0);
    for (QPushButton *button : {m_up, m_down, m_remove, m_sort}) {
        button->setAutoDefault(false);
        column->addWidget(button);
    }
    column->addStretch(1);
    const auto moves = [this](QPushButton *button, int by, Qt::Key key) {
        connect(button, &QPushButton::clicked, this, [this, by] { moveRow(by); });
        // A button's own shortcut clicks a moment later, and twice within it only once.
        const QKeySequence keys(Qt::ALT | key);
        new QShortcut(keys, this, [this, by] { moveRow(by); });
        button->setToolTip(keys.toString(QKeySequence::NativeText));
    };
    moves(m_up, -1, Qt::Key_Up);
    moves(m_down, 1, Qt::Key_Down);
    connect(m_remove, &QPushButton::clicked, this, &KPCombineDialog::removeRow);
    connect(m_sort, &QPushButton::clicked, this, &KPCombineDialog::sortByName);
    return side;
}

void KPCombineDialog::moveRow(int by)
{
    const int from = m_list->currentRow();
    const int to = from + by;
    if (from < 0 || to < 0 || to >= m_list->count())
        return;
    m_list->insertItem(to, m_list->takeItem(from));
    m_list->setCurrentRow(to);
}

void KPCombineDialog::removeRow()
{
    delete m_list->takeItem(m_list->currentRow());
    check();
}

void KPCombineDialog::sortByName()
{
    const KPNameKeys keys;
    QList<QListWidgetItem *> rows;
    while (m_list->count() > 0)
        rows.append(m_list->takeItem(m_list->count() - 1));
    std::stable_sort(rows.begin(), rows.end(),
                     [&](const QListWidgetItem *a, const QListWidgetItem *b) {
                         return keys.key(a->text()) < keys.key(b->text());
                     });
    for (QListWidgetItem *row : rows)
        m_list->addItem(row);
    m_list->setCurrentRow(0);
}

void KPCombineDialog::check()
{
    const int row = m_list->currentRow();
    m_up->setEnabled(row > 0);
    m_down->setEnabled(row >= 0 && row + 1 < m_list->count());
    m_remove->setEnabled(row >= 0 && m_list->count() > 2);
    m_combine->setEnabled(m_list->count() > 1 && !name().isEmpty());
}

QStringList KPCombineDialog::paths() const
{
    QStringList paths;
    for (int row = 0; row < m_list->count(); ++row)
        paths.append(m_list->item(row)->data(pathRole).toString());
    return paths;
}

QString KPCombineDialog::name() const
{
    QString name = KPDoc::displayFileNameToFSName(m_name->text().trimmed());
    if (name.endsWith(u".pdf", Qt::CaseInsensitive))
        name.chop(4);
    while (name.startsWith(u'.')) // the library shows no hidden files
        name.remove(0, 1);
    while (XPPath::encode(name).size() > longestName)
        name.chop(name.back().isLowSurrogate() ? 2 : 1);
    return name;
}
