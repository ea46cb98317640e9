#pragma once

#include <QWidget>

class KPSearchField;

// A search field in a small window of its own, for a look into the library from anywhere. It shows
// the text of the main window's field, and goes when the focus does. Threads: main.
class KPSearchPopup : public QWidget
{
    Q_OBJECT

public:
    KPSearchPopup();

    KPSearchField *field() const { return m_field; }
    // In the upper middle of the screen, ready for typing.
    void showOn(const QScreen *screen);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    KPSearchField *m_field;
};
