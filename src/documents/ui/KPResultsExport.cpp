#include "KPResultsExport.h"

#include "KPFileType.h"
#include "KPLibraryModel.h"
#include "KPLongWork.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPPrompts.h"

#include <QFileDialog>
#include <QLocale>
#include <QSaveFile>

using Model = KPLibraryModel;
using Kind = XPError::Kind;

static QByteArray cell(QString text)
{
    static const QString formula = QStringLiteral("=+-@\t\r");
    if (!text.isEmpty() && formula.contains(text.front()))
        text.prepend(u'\'');
    const QByteArray bytes = XPPath::printable(text).toUtf8();
    return '"' + QByteArray(bytes).replace('"', "\"\"") + '"';
}

static QString number(double value)
{
    return value > 0 ? QString::number(value, 'g', 3) : QString();
}

static QByteArray cellOf(const KPDoc &doc, Model::Column column)
{
    const QVariant value = Model::valueOf(doc, column);
    switch (column) {
    case Model::FlagColumn:
        return value.toBool() ? QByteArrayLiteral("1") : QByteArrayLiteral("0");
    case Model::SizeColumn:
        return value.toByteArray();
    case Model::RatingColumn:
        return number(value.toDouble()).toUtf8();
    case Model::TypeColumn:
        return cell(KPFileType::displayNameForUTI(value.toString()));
    case Model::TagsColumn:
        return cell(value.toStringList().join(QStringLiteral(", ")));
    case Model::CreatedColumn:
    case Model::ModifiedColumn:
    case Model::AddedColumn:
        return value.toDateTime().toLocalTime().toString(Qt::ISODate).toUtf8();
    default:
        return cell(value.toString());
    }
}

template <typename Cell>
static QByteArray line(Cell cellOfColumn)
{
    QByteArrayList cells;
    for (int column = 0; column < Model::ColumnCount; ++column)
        cells.append(cellOfColumn(static_cast<Model::Column>(column)));
    return cells.join(',') + "\r\n";
}

QByteArray KPResultsExport::header()
{
    return line([](Model::Column column) { return cell(Model::titleOf(column)); });
}

QByteArray KPResultsExport::lineOf(const KPDoc &doc)
{
    return line([&](Model::Column column) { return cellOf(doc, column); });
}

std::optional<XPError> KPResultsExport::write(const KPDoc::Docs &docs, const QString &path,
                                              const XPProgress::Task &task)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return XPError::make(Kind::Io, file.errorString(), path);
    file.write(header());
    for (const KPDoc *doc : docs) {
        if (task->isStopAsked)
            return XPError::make(Kind::Cancelled, QStringLiteral("cancelled"));
        if (!doc->isGone())
            file.write(lineOf(*doc));
        ++task->done;
    }
    if (!file.commit())
        return XPError::make(Kind::Io, file.errorString(), path);
    return {};
}

void KPResultsExport::start(const KPDoc::Docs &docs, KPLongWork &work, QWidget *window)
{
    auto *dialog = new QFileDialog(window, qtTrId("KPExportListTitle"), XPFolders::home());
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("csv"));
    dialog->setNameFilter(qtTrId("KPExportListFilter") + QStringLiteral(" (*.csv)"));
    dialog->selectFile(qtTrId("KPExportListName") + QStringLiteral(".csv"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(
        dialog, &QFileDialog::fileSelected, dialog, [docs, &work](const QString &path) {
            xpGuiThread.assertHere();
            const auto task = std::make_shared<XPProgressTask>();
            task->title = qtTrId("KPExportingList", static_cast<int>(docs.size()));
            task->note = qtTrId("KPExportStopNote");
            task->total = docs.size();
            work.run(
                task, [docs, path, task] { return write(docs, path, task); },
                [](const std::optional<XPError> &error) {
                    xpGuiThread.assertHere();
                    if (error && error->kind != Kind::Cancelled)
                        XPPrompts::current().alert(
                            qtTrId("KPCannotExportList"),
                            qtTrId("KPEditFailedLine")
                                .arg(XPPath::printable(XPFolders::abbreviateWithTilde(error->path)),
                                     error->reason()));
                });
        });
    dialog->open();
}
