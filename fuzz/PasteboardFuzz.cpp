// What another program puts on the clipboard is made a name of, and bytes of a file.
#include "XPPasteboardSupport.h"
#include "XPPath.h"
#include "XPRtfText.h"
#include "XPStyledText.h"

#include <QGuiApplication>
#include <cstdlib>

static void check(bool holds)
{
    if (!holds)
        std::abort();
}

// A stem that is one name in one folder.
static void checkName(const QString &title)
{
    check(!title.contains(u'/') && !title.contains(QChar::Null) && !title.contains(u'\n'));
    check(!title.startsWith(u'.') && XPPath::encode(title).size() <= 4 * title.size());
}

static void initialise()
{
    static const QGuiApplication *application = [] {
        static int count = 1;
        static char name[] = "fuzz";
        static char *arguments[] = {name, nullptr};
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return new QGuiApplication(count, arguments);
    }();
    (void)application;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    initialise();
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data + 1),
                           static_cast<qsizetype>(size - 1));
    const QStringList types = XPPasteboardSupport::supportedTypes();
    const XPPasteboard pb = XPPasteboard::of(types[data[0] % types.size()], bytes);
    const QString text = pb.string();
    checkName(XPPasteboardSupport::cleanupDocTitle(pb.urlName()));
    const QString title = XPPasteboardSupport::titleOf(text);
    check(title.size() <= 60 && !title.isEmpty());
    checkName(title);
    check(XPRtfText::characters(bytes, 100).size() <= 100);
    if (pb.has(XPPasteboard::Kind::StyledText)) {
        const auto styled = XPStyledText::fromHtml(bytes);
        check(!styled || styled->openDocument.startsWith("PK"));
    }
    return 0;
}
