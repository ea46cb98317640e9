// KPSettingRow: a control for each kind of setting.
#include "KPDocIcons.h"
#include "KPLook.h"
#include "KPSettingRow.h"
#include "UserDefaults.h"
#include "XPFolders.h"
#include "XPPath.h"
#include "XPWrappedCheckBox.h"

#include <QBoxLayout>
#include <QColorDialog>
#include <QComboBox>
#include <QFileDialog>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>

static constexpr int linesShown = 6;
static constexpr QSize swatchSize{28, 16};

KPSettingRow::Show KPSettingRow::makeBox(QBoxLayout *column)
{
    auto *box = new XPWrappedCheckBox(qtTrId(m_setting.text));
    if (*m_setting.hint)
        box->setAccessibleDescription(qtTrId(m_setting.hint));
    column->addWidget(box);
    connect(box, &QCheckBox::toggled, this,
            [this](bool on) { write(PropertyValue::boolean(on != m_setting.isInverted)); });
    return [this, box](const PropertyValue &value) {
        box->setChecked(value.boolValue() != m_setting.isInverted);
    };
}

KPSettingRow::Show KPSettingRow::makeChoices(QBoxLayout *column)
{
    auto *list = new QComboBox;
    for (const XPSetting::Choice &choice : m_setting.choices) {
        QString text = qtTrId(choice.text);
        if (const int *number = std::get_if<int>(&choice.value))
            text = text.arg(*number);
        list->addItem(text);
    }
    addLabelled(column, list);
    connect(list, &QComboBox::activated, this,
            [this](int row) { write(m_setting.choices[static_cast<size_t>(row)].stored()); });
    return [this, list](const PropertyValue &value) {
        list->setCurrentIndex(-1); // a value of somebody's own
        for (size_t row = 0; row < m_setting.choices.size(); ++row) {
            if (m_setting.choices[row].stored() == value)
                list->setCurrentIndex(static_cast<int>(row));
        }
    };
}

// "%1 MB" is a number with something after it.
static QString suffix(const char *unit)
{
    return *unit ? qtTrId(unit).section(QStringLiteral("%1"), 1) : QString();
}

KPSettingRow::Show KPSettingRow::makeInteger(QBoxLayout *column)
{
    auto *spin = new QSpinBox;
    spin->setRange(m_setting.hasLimits() ? static_cast<int>(m_setting.lowest) : 0,
                   m_setting.hasLimits() ? static_cast<int>(m_setting.highest) : 1'000'000);
    spin->setSuffix(suffix(m_setting.unit));
    spin->setKeyboardTracking(false);
    addLabelled(column, spin);
    connect(spin, &QSpinBox::valueChanged, this,
            [this](int value) { write(PropertyValue::integer(value)); });
    return [spin](const PropertyValue &value) {
        spin->setValue(static_cast<int>(std::clamp<qint64>(value.integerValue(), 0, 1'000'000)));
    };
}

// Whole numbers where there is a unit; else parts of a whole.
KPSettingRow::Show KPSettingRow::makeReal(QBoxLayout *column)
{
    auto *spin = new QDoubleSpinBox;
    const bool isWhole = *m_setting.unit != 0;
    spin->setDecimals(isWhole ? 0 : 2);
    spin->setSingleStep(isWhole ? 1 : 0.05);
    spin->setRange(m_setting.hasLimits() ? m_setting.lowest : 0,
                   m_setting.hasLimits() ? m_setting.highest : 1e6);
    spin->setSuffix(suffix(m_setting.unit));
    spin->setKeyboardTracking(false);
    addLabelled(column, spin);
    connect(spin, &QDoubleSpinBox::valueChanged, this,
            [this](double value) { write(PropertyValue::real(value)); });
    return [spin](const PropertyValue &value) { spin->setValue(value.doubleValue()); };
}

// An emptied field stands for the factory value.
KPSettingRow::Show KPSettingRow::makeText(QBoxLayout *column)
{
    auto *field = new QLineEdit;
    addLabelled(column, field);
    connect(field, &QLineEdit::editingFinished, this, [this, field] {
        if (field->text().isEmpty())
            UserDefaults::standard().remove(m_setting.key);
        else
            write(field->text());
        field->setText(UserDefaults::standard().stringValue(m_setting.key));
    });
    return [field](const PropertyValue &value) {
        if (field->text() != value.string())
            field->setText(value.string());
    };
}

KPSettingRow::Show KPSettingRow::makeLines(QBoxLayout *column)
{
    auto *field = new QPlainTextEdit;
    field->setTabChangesFocus(true);
    field->setFixedHeight(field->fontMetrics().lineSpacing() * linesShown + 16);
    addLabelled(column, field);
    connect(field, &QPlainTextEdit::textChanged, this,
            [this, field] { write(field->toPlainText()); });
    return [field](const PropertyValue &value) {
        if (field->toPlainText() != value.string())
            field->setPlainText(value.string());
    };
}

KPSettingRow::Show KPSettingRow::makeKey(QBoxLayout *column)
{
    auto *field = new QKeySequenceEdit;
    addLabelled(column, field);
    connect(field, &QKeySequenceEdit::editingFinished, this, [this, field] {
        const QKeySequence typed = field->keySequence();
        // One key: the rest of a sequence could not be taken from other programs.
        const QKeySequence key = typed.isEmpty() ? typed : QKeySequence(typed[0]);
        field->setKeySequence(key);
        if (key.isEmpty())
            UserDefaults::standard().remove(m_setting.key);
        else
            write(key.toString(QKeySequence::PortableText));
    });
    return [field](const PropertyValue &value) {
        field->setKeySequence(QKeySequence(value.string(), QKeySequence::PortableText));
    };
}

static QColor colourOf(const PropertyValue &value)
{
    const PropertyValue::Array &parts = value.array();
    const auto part = [&parts](qsizetype number) {
        return static_cast<float>(
            std::clamp(number < parts.size() ? parts[number].doubleValue() : 0, 0.0, 1.0));
    };
    return QColor::fromRgbF(part(0), part(1), part(2), part(3));
}

static PropertyValue partsOf(const QColor &colour)
{
    const QColor rgb = colour.toRgb();
    PropertyValue::Array parts;
    for (const float part : {rgb.redF(), rgb.greenF(), rgb.blueF(), rgb.alphaF()})
        parts.append(PropertyValue::real(static_cast<double>(part)));
    return parts;
}

KPSettingRow::Show KPSettingRow::makeColour(QBoxLayout *column)
{
    auto *button = new QPushButton(qtTrId("KPPrefChooseColour"));
    button->setAutoDefault(false);
    button->setIconSize(swatchSize);
    button->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    addLabelled(column, button);
    connect(button, &QPushButton::clicked, this, [this] {
        auto *dialog =
            new QColorDialog(colourOf(UserDefaults::standard().value(m_setting.key)), this);
        dialog->setWindowTitle(qtTrId(m_setting.text));
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &QColorDialog::colorSelected, this,
                [this](const QColor &colour) { write(partsOf(colour)); });
        dialog->open();
    });
    return [button](const PropertyValue &value) {
        QPixmap swatch(swatchSize);
        swatch.fill(colourOf(value));
        QPainter painter(&swatch); // a frame, as the colour may be the button's own
        painter.setPen(Qt::gray);
        painter.drawRect(swatch.rect().adjusted(0, 0, -1, -1));
        painter.end();
        button->setIcon(swatch);
    };
}

// As it is stored: abbreviated, and as its bytes where it is no well-formed text.
static PropertyValue storedPath(const QString &path)
{
    const QString text = XPFolders::abbreviateWithTilde(path);
    return text.isValidUtf16() ? PropertyValue(text) : PropertyValue(XPPath::encode(path));
}

KPSettingRow::Show KPSettingRow::makePath(QBoxLayout *column)
{
    auto *button = new QPushButton(KPDocIcons::symbol(QStringLiteral("folder")), {});
    button->setAutoDefault(false);
    button->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    addLabelled(column, button);
    connect(button, &QPushButton::clicked, this, [this] {
        auto *dialog = new QFileDialog(this, qtTrId(m_setting.text), XPFolders::home());
        dialog->setFileMode(QFileDialog::Directory);
        dialog->setOption(QFileDialog::ShowDirsOnly);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &QFileDialog::fileSelected, this,
                [this](const QString &folder) { write(storedPath(folder)); });
        dialog->open();
    });
    return [button](const PropertyValue &value) {
        const QString path =
            value.isString() ? value.string() : XPPath::printable(XPPath::decode(value.data()));
        button->setText(path.isEmpty() ? QStringLiteral("~") : XPPath::printable(path));
    };
}
