#pragma once

#include "XPUserService.h"

#include <QWidget>

class QCheckBox;
class QLabel;

// Whether the index is kept from login on, by the user service that comes with the package.
// Threads: main.
class KPLoginSection : public QWidget
{
    Q_OBJECT

public:
    explicit KPLoginSection(QWidget *parent = nullptr);

private:
    void refresh();

    XPUserService m_service;
    QCheckBox *m_box;
    QLabel *m_hint;
};
