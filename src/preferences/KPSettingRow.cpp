#include "KPSettingRow.h"

#include "KPDocIcons.h"
#include "KPIconButton.h"
#include "KPLook.h"
#include "UserDefaults.h"

#include <QBoxLayout>
#include <QLabel>

static constexpr int resetSize = 24;

static UserDefaults &defaults()
{
    return UserDefaults::standard();
}

KPSettingRow::KPSettingRow(const XPSetting &setting, QWidget *parent)
    : QWidget(parent), m_setting(setting), m_reset(new KPIconButton(this))
{
    const QString reset = qtTrId("KPPrefReset");
    m_reset->setIcon(KPDocIcons::symbol(QStringLiteral("undo")));
    m_reset->setToolTip(reset);
    m_reset->setAccessibleName(qtTrId("KPPrefResetNamed").arg(qtTrId(setting.text)));
    m_reset->setFixedSize(resetSize, resetSize); // no higher than a line, which it is part of
    QSizePolicy kept = m_reset->sizePolicy();
    kept.setRetainSizeWhenHidden(true);
    m_reset->setSizePolicy(kept);
    connect(m_reset, &QToolButton::clicked, this, [this] { defaults().remove(m_setting.key); });

    auto *line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(8);
    auto *column = new QVBoxLayout;
    column->setSpacing(2);
    line->addLayout(column, 1);
    line->addWidget(m_reset, 0, Qt::AlignTop);
    m_show = makeControl(column);
    addHint(column);

    const auto follow = [this](const QString &key) {
        m_observations.push_back(defaults().addObserver(
            QStringLiteral("values.") + key, [this](const PropertyValue &) { refresh(); }));
    };
    follow(setting.key);
    if (*setting.onlyWhileOff)
        follow(QLatin1String(setting.onlyWhileOff));
    refresh();
}

KPSettingRow::Show KPSettingRow::makeControl(QBoxLayout *column)
{
    using Kind = XPSetting::Kind;
    if (!m_setting.choices.empty())
        return makeChoices(column);
    switch (m_setting.kind) {
    case Kind::Bool:
        return makeBox(column);
    case Kind::Integer:
        return makeInteger(column);
    case Kind::Real:
        return makeReal(column);
    case Kind::Text:
        return makeText(column);
    case Kind::Lines:
        return makeLines(column);
    case Kind::Key:
        return makeKey(column);
    case Kind::Colour:
        return makeColour(column);
    case Kind::Path:
        return makePath(column);
    default:
        break;
    }
    Q_ASSERT_X(false, "KPSettingRow", "a setting of this kind has a place of its own");
    return [](const PropertyValue &) {};
}

// The text beside the control; in a column of its own, so that the controls stand below each other.
void KPSettingRow::addLabelled(QBoxLayout *column, QWidget *control)
{
    const QString text = qtTrId(m_setting.text);
    auto *label = new QLabel(text);
    label->setBuddy(control);
    label->setWordWrap(true);
    control->setAccessibleName(text);
    auto *line = new QHBoxLayout;
    line->setSpacing(12);
    const bool isTall = m_setting.kind == XPSetting::Kind::Lines;
    line->addWidget(label, 2, isTall ? Qt::AlignTop : Qt::Alignment());
    line->addWidget(control, 3);
    column->addLayout(line);
}

void KPSettingRow::addHint(QBoxLayout *column)
{
    if (!*m_setting.hint)
        return;
    auto *hint = new QLabel(qtTrId(m_setting.hint));
    hint->setWordWrap(true);
    hint->setFont(KPLook::font(KPLook::Type::Facts));
    hint->setForegroundRole(QPalette::PlaceholderText);
    hint->setIndent(m_setting.kind == XPSetting::Kind::Bool ? KPLook::boxIndent : 0);
    column->addWidget(hint);
}

void KPSettingRow::write(const PropertyValue &value)
{
    if (m_isShowing || m_setting.refusal(value))
        return;
    if (value == m_setting.factory)
        defaults().remove(m_setting.key);
    else
        defaults().setValue(m_setting.key, value);
}

void KPSettingRow::refresh()
{
    const PropertyValue value = defaults().value(m_setting.key);
    m_isShowing = true;
    m_show(value);
    m_isShowing = false;
    m_reset->setVisible(defaults().isSaved(m_setting.key) && value != m_setting.factory);
    setEnabled(!*m_setting.onlyWhileOff ||
               !defaults().boolValue(QLatin1String(m_setting.onlyWhileOff)));
}
