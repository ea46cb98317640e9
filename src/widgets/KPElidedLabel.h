#pragma once

#include <QLabel>

// One line of plain text that ends in "…" where there is no room for all of it; the whole is in the
// tooltip then. Threads: main.
class KPElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit KPElidedLabel(QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

private:
    bool isCut() const;
};
