#include "ScannerSession.h"

#include "PageFile.h"
#include "ScannerOptions.h"

#include <QJsonArray>
#include <array>
#include <sane/saneopts.h>

static const QString eventKey = QStringLiteral("event");
static const QString deviceKey = QStringLiteral("device");

ScannerSession::~ScannerSession()
{
    close();
}

void ScannerSession::perform(const QJsonObject &request)
{
    const QString what = request.value(QStringLiteral("do")).toString();
    if (what == u"list")
        list();
    else if (what == u"open")
        open(request.value(deviceKey).toString().toUtf8());
    else if (what == u"scan")
        scan(request);
    else if (what == u"close")
        close();
}

void ScannerSession::list()
{
    const SANE_Device **devices = nullptr;
    const SANE_Status status = sane_get_devices(&devices, SANE_FALSE);
    if (status != SANE_STATUS_GOOD)
        return fail(status);
    QJsonArray all;
    for (; devices && *devices; ++devices) {
        const SANE_Device &device = **devices;
        all.append(QJsonObject{{deviceKey, QString::fromUtf8(device.name)},
                               {QStringLiteral("vendor"), QString::fromUtf8(device.vendor)},
                               {QStringLiteral("model"), QString::fromUtf8(device.model)}});
    }
    m_answer({{eventKey, QStringLiteral("devices")}, {QStringLiteral("devices"), all}});
}

void ScannerSession::open(const QByteArray &device)
{
    close();
    const SANE_Status status = sane_open(device.constData(), &m_handle);
    if (status != SANE_STATUS_GOOD) {
        m_handle = nullptr;
        return fail(status);
    }
    m_answer(
        {{eventKey, QStringLiteral("opened")}, {QStringLiteral("units"), scannerUnits(m_handle)}});
}

void ScannerSession::close()
{
    if (!m_handle)
        return;
    sane_cancel(m_handle);
    sane_close(m_handle);
    m_handle = nullptr;
    m_isFeeding = false;
}

// The scanner may lack any of these; what it does then is what it always does.
SANE_Status ScannerSession::setUp(const QJsonObject &request)
{
    ScannerOptions options(m_handle);
    const QByteArray source = request.value(QStringLiteral("source")).toString().toUtf8();
    if (!source.isEmpty() && !options.set(SANE_NAME_SCAN_SOURCE, source))
        return SANE_STATUS_INVAL;
    const QByteArray mode = request.value(QStringLiteral("mode")).toString().toUtf8();
    const QList<QByteArray> modes = options.strings(SANE_NAME_SCAN_MODE);
    for (const QByteArray &each : modes) {
        // "Color", "24bit Color", "Color - 16 Million Colors"; "Gray"; "Lineart".
        if (each.toLower().contains(mode.toLower())) {
            (void)options.set(SANE_NAME_SCAN_MODE, each);
            break;
        }
    }
    (void)options.set(SANE_NAME_BIT_DEPTH, mode == "Lineart" ? 1 : 8);
    (void)options.set(SANE_NAME_SCAN_RESOLUTION,
                      request.value(QStringLiteral("resolution")).toDouble());
    const double width = request.value(QStringLiteral("width")).toDouble();
    const double height = request.value(QStringLiteral("height")).toDouble();
    (void)options.set(SANE_NAME_SCAN_TL_X, 0);
    (void)options.set(SANE_NAME_SCAN_TL_Y, 0);
    if (width > 0)
        (void)options.set(SANE_NAME_SCAN_BR_X, width);
    if (height > 0)
        (void)options.set(SANE_NAME_SCAN_BR_Y, height);
    return SANE_STATUS_GOOD;
}

void ScannerSession::scan(const QJsonObject &request)
{
    m_isCancelled = false;
    if (!m_handle)
        return fail(SANE_STATUS_INVAL);
    const bool feeds = request.value(QStringLiteral("feeds")).toBool();
    if (!m_isFeeding || !feeds) {
        sane_cancel(m_handle);
        m_isFeeding = false;
        if (const SANE_Status status = setUp(request); status != SANE_STATUS_GOOD)
            return fail(status);
    }
    if (const SANE_Status status = sane_start(m_handle); status != SANE_STATUS_GOOD) {
        sane_cancel(m_handle);
        m_isFeeding = false;
        return fail(status);
    }
    m_isFeeding = feeds;
    readPage(QByteArray::fromBase64(request.value(QStringLiteral("file")).toString().toLatin1()),
             request.value(QStringLiteral("resolution")).toInt());
    if (!m_isFeeding)
        sane_cancel(m_handle);
}

void ScannerSession::readPage(const QByteArray &path, int resolution)
{
    SANE_Parameters page = {};
    SANE_Status status = sane_get_parameters(m_handle, &page);
    if (status != SANE_STATUS_GOOD) {
        m_isFeeding = false;
        return fail(status);
    }
    const auto file = PageFile::begin(path, page, resolution);
    if (!file) {
        m_isFeeding = false;
        return fail(file.error().reason());
    }
    std::array<SANE_Byte, 64 * 1024> piece{};
    int told = -1;
    while (true) {
        if (m_isCancelled) {
            m_isFeeding = false;
            return fail(SANE_STATUS_CANCELLED);
        }
        SANE_Int length = 0;
        status = sane_read(m_handle, piece.data(), static_cast<SANE_Int>(piece.size()), &length);
        if (status == SANE_STATUS_EOF)
            break;
        if (status != SANE_STATUS_GOOD) {
            m_isFeeding = false;
            return fail(status);
        }
        if (const auto error =
                (*file)->append(reinterpret_cast<const char *>(piece.data()), length)) {
            m_isFeeding = false;
            return fail(error->reason());
        }
        const int percent = page.lines > 0 ? (*file)->lines() * 100 / page.lines : 0;
        if (percent != told) {
            told = percent;
            m_answer({{eventKey, QStringLiteral("progress")},
                      {QStringLiteral("percent"), page.lines > 0 ? percent : -1}});
        }
    }
    if (const auto error = (*file)->finish()) {
        m_isFeeding = false;
        return fail(error->reason());
    }
    m_answer({{eventKey, QStringLiteral("page")},
              {QStringLiteral("file"), QString::fromLatin1(path.toBase64())}});
}

void ScannerSession::fail(SANE_Status status)
{
    m_answer({{eventKey, QStringLiteral("failed")},
              {QStringLiteral("status"), static_cast<int>(status)},
              {QStringLiteral("message"), QString::fromUtf8(sane_strstatus(status))}});
}

void ScannerSession::fail(const QString &message)
{
    m_answer({{eventKey, QStringLiteral("failed")},
              {QStringLiteral("status"), -1},
              {QStringLiteral("message"), message}});
}
