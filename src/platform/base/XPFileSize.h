#pragma once

#include <QString>

// A size as people read it, in the user's language: "1 byte", "512 bytes", "3.4 MB". Units of 1,000
// (SI), as the desktop's file managers count. Any thread, once the texts are installed.
QString xpFileSizeInWords(qint64 bytes);
