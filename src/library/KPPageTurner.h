#pragma once

#include <QWidget>

class KPIconButton;
class QLabel;

// "3 of 12" between two buttons that turn the page; hidden where there is one page only.
// Threads: main.
class KPPageTurner : public QWidget
{
    Q_OBJECT

public:
    explicit KPPageTurner(QWidget *parent = nullptr);

    void setPages(int page, int pages); // from 1
    int page() const { return m_page; }
    int pages() const { return m_pages; }
    // Out of range: nothing happens.
    void turnTo(int page);
    void turnBy(int pages) { turnTo(m_page + pages); }

Q_SIGNALS:
    void turned(int page);

private:
    int m_page = 1;
    int m_pages = 0;
    KPIconButton *m_back;
    KPIconButton *m_forward;
    QLabel *m_text;
};
