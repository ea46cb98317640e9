#include "ReaderDocuments.h"

// Formats that are text themselves.

static const QString plainType = QStringLiteral("public.plain-text");

TEST(PlainTextReader, ReadsAnyUsualEncoding)
{
    const QString german = QStringLiteral("Gr\u00FC\u00DFe aus K\u00F6ln");
    const QString russian = QStringLiteral(
        "\u0412\u0441\u0435 \u0441\u0447\u0430\u0441\u0442\u043B\u0438\u0432\u044B\u0435 "
        "\u0441\u0435\u043C\u044C\u0438 \u043F\u043E\u0445\u043E\u0436\u0438 "
        "\u0434\u0440\u0443\u0433 "
        "\u043D\u0430 \u0434\u0440\u0443\u0433\u0430");
    QByteArray cyrillic;
    for (const QChar c : russian)
        cyrillic += static_cast<char>(c < u'\u0410' ? c.unicode() : c.unicode() - 0x410 + 0xC0);
    const QByteArray japanese = "\x93\xFA\x96\x7B\x8C\xEA\x82\xCC\x83\x65\x83\x4C\x83\x58\x83\x67"
                                "\x82\xF0\x93\xC7\x82\xDE\x81\x42";
    const auto row = [](const char *name, const QByteArray &bytes, const QString &text) {
        return ReaderCase{name, plainType, bytes, {}, text, {}, 0};
    };
    expectRead({
        row("utf8", german.toUtf8(), german),
        row("utf8 marked", "\xEF\xBB\xBF" + german.toUtf8(), german),
        row("latin1", german.toLatin1(), german),
        row("euro", "5 \x80, \x93ok\x94", QStringLiteral("5 \u20AC, \u201Cok\u201D")),
        row("utf16 marked", "\xFF\xFE" + wide(german), german),
        row("utf16 bare", wide(german), german),
        row("cyrillic", cyrillic, russian),
        row("shift jis", japanese,
            QStringLiteral("\u65E5\u672C\u8A9E\u306E\u30C6\u30AD\u30B9\u30C8\u3092\u8AAD\u3080"
                           "\u3002")),
        row("last byte of a character missing", "abc\xC3", QStringLiteral("abc\u00C3")),
        row("zero bytes", QByteArray("ab\0cd", 5), {}),
        row("controls", QByteArray(40, '\x02') + QByteArray(40, 'a'), {}),
        row("terminal colours", "\x1B[31mred\x1B[0m\r\n\ttab",
            QStringLiteral("\u001B[31mred\u001B[0m\r\n\ttab")),
        row("mark alone", "\xFF\xFE", {}),
        {"markdown",
         QStringLiteral("net.daringfireball.markdown"),
         "text\n# The title \n",
         QStringLiteral("The title"),
         QStringLiteral("text\n# The title \n"),
         {},
         0},
        {"table",
         QStringLiteral("public.comma-separated-values-text"),
         "a;b\r\n1;2\r\n",
         {},
         QStringLiteral("a;b\r\n1;2\r\n"),
         {},
         0},
    });
    // Cut in the middle of a character, not taken for another encoding.
    const ReaderFile large(QStringLiteral("public.c-source"),
                           "a" + QByteArray("\xC3\xBC").repeated(1 << 20));
    EXPECT_EQ(large.read().text.utf8().size(), DocumentText::maximumBytes - 1);
}

TEST(RtfReader, ReadsTextAndInformation)
{
    const QByteArray start = "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fcharset0 Arial;}"
                             "{\\f1\\fcharset204 Arial;}}{\\colortbl;\\red0;}";
    const QByteArray info =
        "{\\info{\\title Dry \\'fcber dock}{\\author Nora}{\\keywords ship, dock}{\\creatim\\yr2024"
        "\\mo3\\dy2\\hr18\\min22}{\\doccomm A note}}";
    const auto row = [&start](const char *name, const QByteArray &body, const QString &text) {
        return ReaderCase{name, QStringLiteral("public.rtf"), start + body + "}", {}, text, {}, 0};
    };
    expectRead({
        row("lines", "\\pard One\\par Two\\line\r\nThree\\par", QStringLiteral("One\nTwo\nThree")),
        row("bytes", "gr\\'fc\\'df", QStringLiteral("gr\u00FC\u00DF")),
        row("font's encoding", "{\\f1\\'cc\\'e8\\'f0}\\'fc",
            QStringLiteral("\u041C\u0438\u0440\u00FC")),
        row("unicode", "\\uc1 a\\u8364?b\\u-10179?\\u-8704?c",
            QStringLiteral("a\u20ACb\U0001F600c")),
        row("fallback of two", "{\\uc2\\u8364 EUx}y", QStringLiteral("\u20ACxy")),
        row("left out", "a{\\*\\unknown b}{\\pict ffd8}{\\field{\\*\\fldinst LINK}{\\fldrslt c}}",
            QStringLiteral("ac")),
        row("binary", QByteArray("a\\bin5 {}{\\}b"), QStringLiteral("ab")),
        row("table", "a\\cell b\\cell\\row c", QStringLiteral("a\tb\nc")),
        row("signs", "\\ldblquote a\\emdash b\\rdblquote\\~\\{c\\}",
            QStringLiteral("\u201Ca\u2014b\u201D {c}")),
        {"information",
         QStringLiteral("public.rtf"),
         start + info + "text}",
         QStringLiteral("Dry \u00FCber dock"),
         QStringLiteral("text"),
         {{QStringLiteral("kMDItemAuthors"), QStringLiteral("Nora")},
          {QStringLiteral("kMDItemKeywords"), QStringLiteral("ship | dock")},
          {QStringLiteral("kMDItemDescription"), QStringLiteral("A note")}},
         0},
    });
}

TEST(HtmlReader, ReadsPages)
{
    const QString type = QStringLiteral("public.html");
    expectRead({
        {"page",
         type,
         "<html lang=en><title> Ferry\n times </title><meta name=Author content=Nora><meta "
         "name=keywords content='sea, ship'><style>b{}</style><body><h1>A &lt;b&gt;</h1>x<br>y  "
         "<b>z</b><table><tr><td>1<td>2<tr><td>3</table><script>no</script><img alt=pic></body>",
         QStringLiteral("Ferry times"),
         QStringLiteral("A <b>\n\nx\ny z\n\n1\t2\n3\n\npic"),
         {{QStringLiteral("kMDItemAuthors"), QStringLiteral("Nora")},
          {QStringLiteral("kMDItemKeywords"), QStringLiteral("sea | ship")},
          {QStringLiteral("kMDItemLanguages"), QStringLiteral("en")}},
         0},
        {"stated encoding",
         type,
         "<meta charset=iso-8859-2><p>\xBF\xF3\xB3w</p>",
         {},
         QStringLiteral("\u017C\u00F3\u0142w"),
         {},
         0},
        {"wrongly stated",
         type,
         "<meta charset=utf-8><p>gr\xFC\xDF"
         "e und K\xF6ln</p>",
         {},
         QStringLiteral("gr\u00FC\u00DFe und K\u00F6ln"),
         {},
         0},
        {"xml page",
         QStringLiteral("public.xhtml"),
         "<?xml version='1.0'?><html xmlns='http://www.w3.org/1999/xhtml'><head><title>T</title>"
         "</head><body><p>one</p></body></html>",
         QStringLiteral("T"),
         QStringLiteral("one"),
         {},
         0},
        {"fragment", type, "just <i>words</i>", {}, QStringLiteral("just words"), {}, 0},
    });
}

TEST(CardReader, ReadsCardsOfAllVersions)
{
    const QString type = QStringLiteral("public.vcard");
    expectRead({
        {"3.0",
         type,
         "BEGIN:VCARD\r\nVERSION:3.0\r\nN:Lindqvist;Nora;;Dr.;\r\nFN:Dr. Nora Lindq\r\n vist\r\n"
         "ORG:Yard\\, Ltd;Docks\r\nitem1.EMAIL;TYPE=work:nora@example.org\r\nTEL:+49 1\r\n"
         "ADR:;;Lindenallee "
         "12;Nordhafen;;24105;\r\nNOTE:two\\nlines\r\nPHOTO:AAAA\r\nEND:VCARD\r\n",
         QStringLiteral("Dr. Nora Lindqvist"),
         QStringLiteral("Dr. Nora Lindqvist\nYard, Ltd Docks\nnora@example.org\n+49 1\nLindenallee "
                        "12 Nordhafen 24105\ntwo\nlines"),
         {{QStringLiteral("kMDItemEmailAddresses"), QStringLiteral("nora@example.org")},
          {QStringLiteral("kMDItemPhoneNumbers"), QStringLiteral("+49 1")},
          {QStringLiteral("kMDItemOrganizations"), QStringLiteral("Yard, Ltd Docks")}},
         0},
        {"2.1, two cards",
         type,
         "BEGIN:VCARD\nN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:M=C3=BCller;J=\n=C3=B6rg\nEND:"
         "VCARD\nBEGIN:VCARD\nFN:Two\nEND:VCARD\n",
         QStringLiteral("J\u00F6rg M\u00FCller"),
         QStringLiteral("J\u00F6rg M\u00FCller\n\nTwo"),
         {},
         0},
        {"property list",
         QStringLiteral("com.apple.addressbook.person"),
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict><key>First</key>"
         "<string>Ada</string><key>Last</key><string>King</string><key>Email</key><dict><key>values"
         "</key><array><string>ada@example.org</string></array></dict></dict></plist>",
         QStringLiteral("Ada King"),
         QStringLiteral("King\nAda\nada@example.org"),
         {{QStringLiteral("kMDItemEmailAddresses"), QStringLiteral("ada@example.org")}},
         0},
    });
}

TEST(CalendarReader, ReadsEntries)
{
    expectRead({{"event",
                 QStringLiteral("com.apple.ical.ics"),
                 "BEGIN:VCALENDAR\nPRODID:-//Some Program//EN\nBEGIN:VTIMEZONE\nDTSTART:"
                 "19700101T000000\nEND:VTIMEZONE\nBEGIN:VEVENT\nSUMMARY:Launch\\, at last\nDTSTART:"
                 "20240302T182207Z\nDTEND:20240302T192207Z\nLOCATION:Dock 4\nORGANIZER;CN=\"Nora: "
                 "L\":mailto:nora@example.org\nATTENDEE:MAILTO:per@example.org\nBEGIN:VALARM\n"
                 "DESCRIPTION:beep\nEND:VALARM\nEND:VEVENT\nEND:VCALENDAR\n",
                 QStringLiteral("Launch, at last"),
                 QStringLiteral("Launch, at last\nDock 4\nNora: L\nper@example.org"),
                 {{QStringLiteral("kMDItemStartDate"), QStringLiteral("2024-03-02T18:22:07Z")},
                  {QStringLiteral("kMDItemEndDate"), QStringLiteral("2024-03-02T19:22:07Z")},
                  {QStringLiteral("kMDItemAuthors"), QStringLiteral("Nora: L")},
                  {QStringLiteral("kMDItemRecipients"), QStringLiteral("per@example.org")}},
                 0}});
}

TEST(LinkReader, ReadsAddresses)
{
    const QString url = QStringLiteral("https://example.org/a?b=c");
    const QMap<QString, QString> facts = {{QStringLiteral("kMDItemURL"), url}};
    const QByteArray list =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>"
        "<key>URL</key><string>https://example.org/a?b=c</string>";
    expectRead({
        {"webloc",
         QStringLiteral("com.apple.web-internet-location"),
         list + "</dict></plist>",
         {},
         url,
         facts,
         0},
        {"bookmark", QStringLiteral("com.apple.safari.bookmark"),
         list + "<key>Name</key><string>Here</string></dict></plist>", QStringLiteral("Here"),
         QStringLiteral("Here\n") + url, facts, 0},
        {"shortcut",
         QStringLiteral("com.microsoft.internet-shortcut"),
         "[DEFAULT]\r\nBASEURL=x\r\n[InternetShortcut]\r\nURL=https://example.org/"
         "a?b=c\r\nIDList=\r\n",
         {},
         url,
         facts,
         0},
        {"desktop entry",
         QStringLiteral("org.freedesktop.desktop-entry"),
         "[Desktop Entry]\nType=Application\nExec=rm\nName=Docks\nName[de]=Werften\n"
         "Keywords=sea;ship;\n[Desktop Action x]\nName=No\n",
         QStringLiteral("Docks"),
         QStringLiteral("Docks\nWerften\nsea;ship;"),
         {{QStringLiteral("kMDItemKeywords"), QStringLiteral("sea | ship")}},
         0},
    });
}

TEST(MailReader, ReadsMessages)
{
    const QString type = QStringLiteral("com.apple.mail.email");
    const QByteArray head =
        "From: =?iso-8859-1?Q?J=F6rg?= =?iso-8859-1?Q?_M=FCller=2C_Dr.?= <jm@example.org>\r\n"
        "To: nora@example.org, \"Per B.\" <per@example.org>\r\nSubject: =?utf-8?B?R3LDvMOf?=\r\n "
        "=?utf-8?Q?e?= now\r\nDate: Sat, 02 Mar 2024 19:22:07 +0100\r\nMIME-Version: 1.0\r\n";
    const QMap<QString, QString> facts = {
        {QStringLiteral("kMDItemAuthors"), QStringLiteral("J\u00F6rg M\u00FCller, Dr.")},
        {QStringLiteral("kMDItemAuthorEmailAddresses"), QStringLiteral("jm@example.org")},
        {QStringLiteral("kMDItemRecipients"), QStringLiteral("nora@example.org | Per B.")},
        {QStringLiteral("kMDItemContentCreationDate"), QStringLiteral("2024-03-02T18:22:07Z")}};
    const QString title = QStringLiteral("Gr\u00FC\u00DFe now");
    const QByteArray plain =
        "Content-Type: text/plain; charset=iso-8859-1\r\nContent-Transfer-Encoding: "
        "quoted-printable\r\n\r\nsch=F6n\r\n";
    const QByteArray parts =
        "Content-Type: multipart/mixed; boundary=X\r\n\r\n--X\r\nContent-Type: "
        "multipart/alternative; boundary=Y\r\n\r\n--Y\r\n" +
        plain +
        "\r\n--Y\r\nContent-Type: text/html\r\n\r\n<b>no</b>\r\n--Y--\r\n--X\r\nContent-Type: "
        "application/pdf\r\nContent-Disposition: attachment; filename=\"dock plan.pdf\"\r\n"
        "Content-Transfer-Encoding: base64\r\n\r\nAAAA\r\n--X\r\nContent-Type: message/rfc822\r\n"
        "\r\nSubject: inside\r\nContent-Type: text/html; "
        "charset=utf-8\r\n\r\n<p>deep</p>\r\n--X--\r\n";
    const QString text = title + QStringLiteral("\n\nsch\u00F6n");
    const QByteArray message = head + plain;
    expectRead({
        {"plain", type, message, title, text, facts, 0},
        {"with its length", QStringLiteral("com.apple.mail.emlx"),
         QByteArray::number(message.size()) + "\n" + message + "<?xml version=\"1.0\"?><plist/>",
         title, text, facts, 0},
        {"of a mailbox", QStringLiteral("org.ietf.mbox"),
         "From jm@example.org Sat Mar  2 18:22:07 2024\n" + message, title, text, facts, 0},
        {"parts",
         type,
         head + parts,
         title,
         text + QStringLiteral("\n\ndock plan.pdf\n\ninside\n\ndeep"),
         {{QStringLiteral("kMDItemAttachmentNames"), QStringLiteral("dock plan.pdf")}},
         0},
    });
}
