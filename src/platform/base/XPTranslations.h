#pragma once

#include <QLocale>

// The texts that people read. Code names them by id, with qtTrId(id); the wording is
// in data/translations/murn_LANGUAGE.ts, compiled into every program.
namespace XPTranslations {

// Makes qtTrId() answer in the first of the locale's languages that we have; an id that this
// language lacks, and a language that we do not have, is answered in English. Qt's own texts
// (buttons of message boxes) follow where its translations are installed.
// Main thread, once, after the application object and before the first text.
void install(const QLocale &locale = QLocale::system());

} // namespace XPTranslations
