#include "KPPreviewText.h"

#include "DocumentTable.h"
#include "KPLook.h"
#include "XPPath.h"

#include <QAbstractTableModel>
#include <QFontDatabase>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QTableView>
#include <algorithm>

static constexpr qsizetype mostColumns = 200;
static constexpr int textMargin = 24;
static constexpr int widestColumn = 320;

namespace {

// The cells of a text; short lines are filled up.
class Cells : public QAbstractTableModel
{
public:
    Cells(QList<QStringList> rows, QObject *parent)
        : QAbstractTableModel(parent), m_rows(std::move(rows))
    {
        for (const QStringList &row : std::as_const(m_rows))
            m_columns = std::max(m_columns, row.size());
    }
    int rowCount(const QModelIndex &parent) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }
    int columnCount(const QModelIndex &parent) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_columns);
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole)
            return {};
        return XPPath::printable(m_rows.at(index.row()).value(index.column()));
    }

private:
    QList<QStringList> m_rows;
    qsizetype m_columns = 0;
};

} // namespace

// Of control characters only tabs do here what they mean.
static QString printable(const QString &line)
{
    QStringList parts = line.split(u'\t');
    for (QString &part : parts)
        part = XPPath::printable(part);
    return parts.join(u'\t');
}

// A line without end takes seconds to lay out.
static QString broken(const QStringList &lines)
{
    static constexpr qsizetype longest = 4000;
    QString text;
    for (const QString &line : lines) {
        for (qsizetype at = 0; at == 0 || at < line.size(); at += longest)
            text += printable(line.mid(at, longest)) + u'\n';
    }
    text.chop(1);
    return text;
}

KPPreviewText::KPPreviewText(QWidget *parent)
    : QStackedWidget(parent), m_text(new QPlainTextEdit), m_table(new QTableView)
{
    m_text->setReadOnly(true);
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->setUndoRedoEnabled(false);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_text->document()->setDocumentMargin(textMargin);
    m_text->setAccessibleName(qtTrId("KPTextOfDocument"));
    m_table->setFrameShape(QFrame::NoFrame);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setAlternatingRowColors(true);
    m_table->setWordWrap(false);
    m_table->verticalHeader()->setDefaultSectionSize(24);
    m_table->setAccessibleName(qtTrId("KPTableOfDocument"));
    addWidget(m_text);
    addWidget(m_table);
    setFocusProxy(m_text);
}

void KPPreviewText::setText(const QString &text, const QStringList &tree)
{
    const auto is = [&](const char *type) { return tree.contains(QLatin1String(type)); };
    QStringList lines = text.split(u'\n');
    while (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    const bool isCode = is("public.source-code");
    const auto separator =
        isCode ? std::nullopt
               : DocumentTable::separatorOf(lines, is("public.comma-separated-values-text"));
    delete m_table->model();
    if (!separator) {
        const QFont font = isCode ? QFontDatabase::systemFont(QFontDatabase::FixedFont)
                                  : KPLook::font(KPLook::Type::Title);
        QFont body = font;
        body.setWeight(QFont::Normal);
        m_text->setFont(body);
        m_text->setLineWrapMode(isCode ? QPlainTextEdit::NoWrap : QPlainTextEdit::WidgetWidth);
        m_text->setPlainText(broken(lines));
        setCurrentWidget(m_text);
    } else {
        QList<QStringList> rows;
        rows.reserve(lines.size());
        for (const QString &line : std::as_const(lines))
            rows.append(DocumentTable::cellsOf(line, *separator, mostColumns));
        m_text->clear();
        m_table->setModel(new Cells(std::move(rows), m_table));
        m_table->resizeColumnsToContents();
        for (int column = 0; column < m_table->model()->columnCount(); ++column)
            m_table->setColumnWidth(column, std::min(m_table->columnWidth(column), widestColumn));
        setCurrentWidget(m_table);
    }
    setFocusProxy(currentWidget());
}

void KPPreviewText::zoomBy(int steps)
{
    steps > 0 ? m_text->zoomIn(steps) : m_text->zoomOut(-steps);
}
