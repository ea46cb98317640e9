#include "XPTranslations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>
#include <memory>

// The texts lie in a static library, where a resource does not register itself.
static void registerTexts()
{
    Q_INIT_RESOURCE(murn_translations);
}

static bool load(const QLocale &locale, const QString &name, const QString &folder)
{
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(locale, name, QStringLiteral("_"), folder))
        return false;
    translator->setParent(QCoreApplication::instance());
    return QCoreApplication::installTranslator(translator.release());
}

// A translator that is installed later is asked earlier, so English goes in first.
void XPTranslations::install(const QLocale &locale)
{
    registerTexts();
    const auto texts = QStringLiteral(":/translations");
    load(QLocale(QLocale::English), QStringLiteral("murn"), texts);
    if (locale.language() != QLocale::English)
        load(locale, QStringLiteral("murn"), texts);
    load(locale, QStringLiteral("qtbase"), QLibraryInfo::path(QLibraryInfo::TranslationsPath));
}
