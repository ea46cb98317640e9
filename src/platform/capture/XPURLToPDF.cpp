#include "XPURLToPDF.h"

#include "UserDefaults.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QUrl>
#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;
using Kind = XPError::Kind;

static constexpr auto patience = 90s;      // for the whole page
static constexpr auto mostSettling = 5s;   // a page that never rests is taken as it is then
static constexpr double unitsPerInch = 96; // of style sheets
static constexpr double a4Width = 210 / 25.4;
static constexpr double a4Height = 297 / 25.4;
static constexpr double longestPaper = 200; // inches: what a PDF page may have by ISO 32000
static constexpr double narrowest = 200;
static constexpr double widest = 5000;
static constexpr qsizetype largestPdf = 512 << 20;

XPURLToPDF::Options XPURLToPDF::Options::fromSettings()
{
    const UserDefaults &defaults = UserDefaults::standard();
    const double width =
        defaults.value(QStringLiteral("KPURLToPDFWebViewWidth")).doubleValue(Options().width);
    return {defaults.boolValue(QStringLiteral("KPURLToPDFPaginate")),
            defaults.boolValue(QStringLiteral("KPURLToPDFBackgrounds")),
            std::clamp(width, narrowest, widest)};
}

std::optional<QString> XPURLToPDF::addressFrom(const QString &text)
{
    const QString trimmed = text.trimmed();
    const bool hasScheme = trimmed.contains(QStringLiteral("://"));
    const QUrl url(hasScheme ? trimmed : QStringLiteral("https://") + trimmed, QUrl::TolerantMode);
    const QString scheme = url.scheme();
    if (trimmed.isEmpty() || !url.isValid() || url.host().isEmpty() ||
        (scheme != u"http" && scheme != u"https"))
        return {};
    return QString::fromLatin1(url.toEncoded());
}

XPURLToPDF::XPURLToPDF(const Options &options) : m_options(options)
{
    m_patience.setSingleShot(true);
    m_settling.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this,
            [this] { fail(Kind::Io, qtTrId("XPPageTooSlow")); });
    connect(&m_settling, &QTimer::timeout, this, &XPURLToPDF::look);
}

void XPURLToPDF::fail(Kind kind, const QString &message)
{
    if (std::exchange(m_isEnded, true))
        return;
    m_patience.stop();
    m_settling.stop();
    QTimer::singleShot(0, this, [this, error = XPError::make(kind, message)] {
        m_browser.reset();
        Q_EMIT failed(error);
    });
}

void XPURLToPDF::ask(const QString &method, const QJsonObject &parameters,
                     std::function<void(const QJsonObject &)> next)
{
    m_browser->ask(method, parameters, m_session,
                   [this, next = std::move(next)](const QJsonObject &result, const QString &error) {
                       if (!error.isEmpty())
                           fail(Kind::Io, qtTrId("XPBrowserSays").arg(error));
                       else if (!m_isEnded)
                           next(result);
                   });
}

void XPURLToPDF::start(const QString &address)
{
    m_address = address;
    const auto program = XPBrowserProcess::findProgram();
    if (!program) {
        fail(Kind::Unsupported, XPBrowserProcess::whatToInstall());
        return;
    }
    m_browser = std::make_unique<XPBrowserProcess>();
    connect(m_browser.get(), &XPBrowserProcess::lost, this,
            [this](const QString &reason) { fail(Kind::Io, reason); });
    connect(m_browser.get(), &XPBrowserProcess::told, this, &XPURLToPDF::told);
    if (const auto error = m_browser->start(*program)) {
        fail(error->kind, error->message);
        return;
    }
    m_patience.start(patience);
    ask(QStringLiteral("Browser.setDownloadBehavior"),
        {{QStringLiteral("behavior"), QStringLiteral("deny")}}, [](const QJsonObject &) {});
    ask(QStringLiteral("Target.createTarget"),
        {{QStringLiteral("url"), QStringLiteral("about:blank")}},
        [this](const QJsonObject &made) { attach(made[QStringLiteral("targetId")].toString()); });
}

void XPURLToPDF::attach(const QString &target)
{
    ask(QStringLiteral("Target.attachToTarget"),
        {{QStringLiteral("targetId"), target}, {QStringLiteral("flatten"), true}},
        [this](const QJsonObject &attached) {
            m_session = attached[QStringLiteral("sessionId")].toString();
            navigate();
        });
}

void XPURLToPDF::navigate()
{
    const auto nothing = [](const QJsonObject &) {};
    constexpr int height = 800;
    ask(QStringLiteral("Page.enable"), {}, nothing);
    ask(QStringLiteral("Network.enable"), {}, nothing);
    ask(QStringLiteral("Page.setLifecycleEventsEnabled"), {{QStringLiteral("enabled"), true}},
        nothing);
    ask(QStringLiteral("Emulation.setDeviceMetricsOverride"),
        {{QStringLiteral("width"), static_cast<int>(m_options.width)},
         {QStringLiteral("height"), height},
         {QStringLiteral("deviceScaleFactor"), 1},
         {QStringLiteral("mobile"), false}},
        nothing);
    if (!m_options.paginates) // as it looks in a window
        ask(QStringLiteral("Emulation.setEmulatedMedia"),
            {{QStringLiteral("media"), QStringLiteral("screen")}}, nothing);
    ask(QStringLiteral("Page.navigate"), {{QStringLiteral("url"), m_address}},
        [this](const QJsonObject &result) {
            const QString error = result[QStringLiteral("errorText")].toString();
            if (!error.isEmpty())
                fail(Kind::NotFound, qtTrId("XPPageNotReached").arg(error));
            m_loader = result[QStringLiteral("loaderId")].toString();
            if (m_loaded.contains(m_loader))
                settle();
        });
}

void XPURLToPDF::told(const QString &event, const QJsonObject &parameters)
{
    if (m_session.isEmpty() || m_isEnded)
        return;
    const QString name = parameters[QStringLiteral("name")].toString();
    if (event == u"Network.responseReceived" && !m_isLoaded &&
        parameters[QStringLiteral("type")].toString() == u"Document") {
        constexpr int firstFailure = 400; // RFC 9110
        const QJsonObject response = parameters[QStringLiteral("response")].toObject();
        const int status = response[QStringLiteral("status")].toInt();
        const bool isOfPage =
            parameters[QStringLiteral("requestId")] == parameters[QStringLiteral("loaderId")];
        if (isOfPage && status >= firstFailure)
            fail(Kind::NotFound, qtTrId("XPPageRefused").arg(status));
    } else if (event == u"Page.lifecycleEvent") {
        // The empty page that stood there first tells of itself too.
        const QString loader = parameters[QStringLiteral("loaderId")].toString();
        if (name == u"load")
            m_loaded.insert(loader);
        if (name == u"load" && loader == m_loader)
            settle();
        else if (name == u"networkIdle" && loader == m_loader && m_settling.isActive())
            m_settling.start(0);
    }
}

void XPURLToPDF::settle()
{
    if (!std::exchange(m_isLoaded, true) && !m_isEnded)
        m_settling.start(mostSettling);
}

void XPURLToPDF::look()
{
    const QString script =
        QStringLiteral("JSON.stringify({title: document.title, url: location.href, height: "
                       "Math.max(document.documentElement.scrollHeight, document.body ? "
                       "document.body.scrollHeight : 0)})");
    ask(QStringLiteral("Runtime.evaluate"), {{QStringLiteral("expression"), script}},
        [this](const QJsonObject &result) {
            const QString text =
                result[QStringLiteral("result")][QStringLiteral("value")].toString();
            const QJsonObject facts = QJsonDocument::fromJson(text.toUtf8()).object();
            m_page.title = facts[QStringLiteral("title")].toString().simplified();
            // A page may say what it likes of its address, but not that it is no page.
            m_page.url = addressFrom(facts[QStringLiteral("url")].toString()).value_or(m_address);
            print(facts[QStringLiteral("height")].toDouble());
        });
}

void XPURLToPDF::print(double height)
{
    double paperWidth = m_options.width / unitsPerInch;
    double paperHeight = std::clamp(height / unitsPerInch, 1.0, longestPaper);
    double scale = 1;
    if (m_options.paginates) {
        constexpr double least = 0.1; // of what the browser takes
        constexpr double most = 2;
        scale = std::clamp(a4Width / paperWidth, least, most);
        paperWidth = a4Width;
        paperHeight = a4Height;
    }
    ask(QStringLiteral("Page.printToPDF"),
        {{QStringLiteral("printBackground"), m_options.hasBackgrounds},
         {QStringLiteral("paperWidth"), paperWidth},
         {QStringLiteral("paperHeight"), paperHeight},
         {QStringLiteral("scale"), scale},
         {QStringLiteral("marginTop"), 0},
         {QStringLiteral("marginBottom"), 0},
         {QStringLiteral("marginLeft"), 0},
         {QStringLiteral("marginRight"), 0},
         {QStringLiteral("transferMode"), QStringLiteral("ReturnAsStream")}},
        [this](const QJsonObject &result) {
            readPdf(result[QStringLiteral("stream")].toString());
        });
}

void XPURLToPDF::readPdf(const QString &stream)
{
    constexpr int piece = 1 << 20;
    ask(QStringLiteral("IO.read"),
        {{QStringLiteral("handle"), stream}, {QStringLiteral("size"), piece}},
        [this, stream](const QJsonObject &result) {
            const QByteArray data = result[QStringLiteral("data")].toString().toLatin1();
            m_page.pdf += result[QStringLiteral("base64Encoded")].toBool()
                              ? QByteArray::fromBase64(data)
                              : data;
            if (m_page.pdf.size() > largestPdf) {
                fail(Kind::TooLarge, qtTrId("XPPageTooLarge"));
            } else if (!result[QStringLiteral("eof")].toBool()) {
                readPdf(stream);
            } else if (!std::exchange(m_isEnded, true)) {
                m_patience.stop();
                QTimer::singleShot(0, this, [this] {
                    m_browser.reset();
                    Q_EMIT captured(m_page);
                });
            }
        });
}
