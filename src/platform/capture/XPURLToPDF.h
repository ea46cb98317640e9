#pragma once

#include "XPBrowserProcess.h"

#include <QObject>
#include <QSet>
#include <QTimer>
#include <memory>

// A web page as a PDF document, made by an installed browser (XPBrowserProcess): as wide as the
// setting says, as one long page or in pages of A4, with backgrounds or without.
//
// Only http and https are fetched. Threads: main. Used once.
class XPURLToPDF : public QObject
{
    Q_OBJECT

public:
    struct Options
    {
        bool paginates = false;
        bool hasBackgrounds = true;
        double width = 1000; // of the layout, in the units of style sheets (1/96 inch)

        static Options fromSettings(); // "KPURLToPDFPaginate", "...Backgrounds", "...WebViewWidth"
    };
    struct Page
    {
        QByteArray pdf;
        QString title; // may be empty
        QString url;   // after redirections
    };

    explicit XPURLToPDF(const Options &options);

    // What a person types as an address; nothing: that is none that can be captured.
    static std::optional<QString> addressFrom(const QString &text);

    // captured() or failed() comes from the event loop. Unsupported: there is no browser.
    void start(const QString &address);

Q_SIGNALS:
    void captured(const XPURLToPDF::Page &page);
    void failed(const XPError &error);

private:
    void ask(const QString &method, const QJsonObject &parameters,
             std::function<void(const QJsonObject &)> next);
    void fail(XPError::Kind kind, const QString &message);
    void attach(const QString &target);
    void navigate();
    void told(const QString &event, const QJsonObject &parameters);
    void settle();
    void look();
    void print(double height);
    void readPdf(const QString &stream);

    const Options m_options;
    QString m_address;
    std::unique_ptr<XPBrowserProcess> m_browser;
    QString m_session;
    QTimer m_patience;
    QTimer m_settling;      // what a page fetches once it is there
    QString m_loader;       // of the page that was asked for
    QSet<QString> m_loaded; // loaders whose pages are there
    bool m_isLoaded = false;
    bool m_isEnded = false;
    Page m_page;
};
