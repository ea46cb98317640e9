// An importer that a document has taken over: it does what the extension of the document's name
// says. For tests of the client.
#include "ImportMessages.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <map>
#include <sys/socket.h>
#include <unistd.h>

static constexpr int client = 3;

static bool receive(ImportFrameReader &reader)
{
    const auto space = reader.space();
    const ssize_t got = ::read(client, space.at, static_cast<size_t>(space.size));
    return got > 0 && !reader.filled(got);
}

static std::optional<ImportJob> nextJob()
{
    static ImportFrameReader reader;
    for (;;) {
        if (const auto frame = reader.take())
            return ImportJob::from(*frame).valueOr({});
        if (!receive(reader))
            return {};
    }
}

static void sendBytes(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t sent = ::write(client, bytes.data(), static_cast<size_t>(bytes.size()));
        if (sent <= 0)
            ::_exit(1);
        bytes = bytes.sliced(sent);
    }
}

static QByteArray goodAnswer(const char *text)
{
    DocumentAnswer answer;
    answer.text.append(QByteArrayView(text));
    const ImportFrame frame = importFrameOf(answer);
    return frame.bytesBeforeBody() + frame.body;
}

static QByteArray prefix(quint32 kind, quint32 head, quint32 body)
{
    const quint32 numbers[] = {kind, head, body};
    return QByteArray(reinterpret_cast<const char *>(numbers), sizeof numbers);
}

[[noreturn]] static void compute()
{
    for (volatile unsigned count = 0;;)
        count = count + 1;
}

[[noreturn]] static void sleepOn()
{
    for (;;)
        ::pause();
}

static const std::map<QString, std::function<void()>> deeds = {
    {QStringLiteral("txt"), [] { sendBytes(goodAnswer("well read")); }},
    {QStringLiteral("die"),
     [] {
         std::signal(SIGSEGV, SIG_DFL); // a sanitizer would make an exit of it
         std::raise(SIGSEGV);
     }},
    {QStringLiteral("exit"), [] { ::_exit(0); }},
    {QStringLiteral("mid"),
     [] {
         sendBytes(goodAnswer("cut short").chopped(3));
         std::raise(SIGKILL);
     }},
    {QStringLiteral("sleep"), [] { sleepOn(); }},
    {QStringLiteral("stall"),
     [] {
         sendBytes(goodAnswer("cut short").chopped(3));
         sleepOn();
     }},
    {QStringLiteral("compute"), [] { compute(); }},
    {QStringLiteral("flood"),
     [] {
         for (;;)
             sendBytes(QByteArray(1 << 20, 'x'));
     }},
    {QStringLiteral("long"), [] { sendBytes(prefix(0x4D494131, 10, ~0U) + QByteArray(99, 'x')); }},
    {QStringLiteral("short"),
     [] {
         // States more than it sends, and waits.
         sendBytes(prefix(0x4D494131, 1 << 20, 1 << 20) + QByteArray(99, 'x'));
         sleepOn();
     }},
    {QStringLiteral("hello"), [] { sendBytes(ImportHello().frame().bytesBeforeBody()); }},
    {QStringLiteral("rubbish"), [] { sendBytes(prefix(0x4D494131, 4, 0) + "rubb"); }},
    {QStringLiteral("twice"),
     [] { sendBytes(goodAnswer("first") + goodAnswer("for the next document")); }},
};

int main()
{
    std::signal(SIGPIPE, SIG_IGN);
    sendBytes(ImportHello{7, true, {QStringLiteral("public.data")}}.frame().bytesBeforeBody());
    while (const auto job = nextJob()) {
        const auto deed = deeds.find(job->extension);
        if (deed == deeds.end())
            return 1;
        deed->second();
    }
    return 0;
}
