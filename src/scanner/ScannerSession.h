#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <atomic>
#include <functional>
#include <sane/sane.h>

// One scanner, open or not, and what is asked of it.
//
// Requests and answers are objects, as docs/formats.md has them ("Messages of the scanner's
// process"). Threads: perform() one; cancel() any.
class ScannerSession
{
public:
    using Answer = std::function<void(const QJsonObject &)>;

    explicit ScannerSession(Answer answer) : m_answer(std::move(answer)) {}
    ~ScannerSession();
    ScannerSession(const ScannerSession &) = delete;
    ScannerSession &operator=(const ScannerSession &) = delete;

    void perform(const QJsonObject &request);
    // Stops the page that is being read at its next piece.
    void cancel() { m_isCancelled = true; }

private:
    void list();
    void open(const QByteArray &device);
    void close();
    void scan(const QJsonObject &request);
    SANE_Status setUp(const QJsonObject &request);
    void readPage(const QByteArray &path, int resolution);
    void fail(SANE_Status status);
    void fail(const QString &message);

    Answer m_answer;
    std::atomic<bool> m_isCancelled = false;
    SANE_Handle m_handle = nullptr;
    bool m_isFeeding = false; // more pages may follow without a new start
};
