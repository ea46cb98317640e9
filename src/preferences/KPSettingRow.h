#pragma once

#include "XPNotificationCenter.h"
#include "XPSetting.h"

#include <QWidget>
#include <vector>

class QBoxLayout;
class QLabel;
class KPIconButton;

// One setting of the table with the control that goes with its kind: what it does, a sentence more
// where that is needed, and a button that gives it its factory value back, shown while it has
// another.
//
// Shows what the setting holds, whoever changes it, and changes it at once. What the setting cannot
// hold is not written. Threads: main. The setting is one of the table, which lives for the process.
class KPSettingRow : public QWidget
{
    Q_OBJECT

public:
    explicit KPSettingRow(const XPSetting &setting, QWidget *parent = nullptr);

    const XPSetting &setting() const { return m_setting; }

private:
    using Show = std::function<void(const PropertyValue &)>;

    Show makeControl(QBoxLayout *column);
    Show makeBox(QBoxLayout *column);
    Show makeChoices(QBoxLayout *column);
    Show makeInteger(QBoxLayout *column);
    Show makeReal(QBoxLayout *column);
    Show makeText(QBoxLayout *column);
    Show makeLines(QBoxLayout *column);
    Show makeKey(QBoxLayout *column);
    Show makeColour(QBoxLayout *column);
    Show makePath(QBoxLayout *column);
    void addLabelled(QBoxLayout *column, QWidget *control);
    void addHint(QBoxLayout *column);
    void write(const PropertyValue &value);
    void refresh();

    const XPSetting &m_setting;
    Show m_show;
    KPIconButton *m_reset;
    bool m_isShowing = false; // what the control tells then is nobody's wish
    std::vector<XPObservation> m_observations;
};
