#include "KPDocIcons.h"

#include "KPContentTypes.h"

#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>

// The icons lie in a static library, where a resource does not register itself.
static void registerResource()
{
    Q_INIT_RESOURCE(murn_icons); // a macro that works outside namespaces only
}

void KPDocIcons::registerIcons()
{
    registerResource();
}

namespace {

struct Kind
{
    const char *type; // and all that conform to it
    const char *icon;
};

// A symbol is drawn as a mask for the palette's colour, so that it is never dark on dark.
class SymbolEngine : public QIconEngine
{
public:
    explicit SymbolEngine(const QIcon &mask) : m_mask(mask) {}

    QIconEngine *clone() const override { return new SymbolEngine(*this); }
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const double ratio = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect, coloured(rect.size(), mode, state, ratio));
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return coloured(size, mode, state, 1);
    }
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state, qreal) override
    {
        return coloured(size, mode, state, 1); // `size` is in device pixels here
    }

private:
    QPixmap coloured(const QSize &size, QIcon::Mode mode, QIcon::State state, double ratio) const
    {
        QPixmap result = m_mask.pixmap(size, ratio);
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role = mode == QIcon::Selected ? QPalette::HighlightedText
                          : state == QIcon::On && mode != QIcon::Disabled ? QPalette::Highlight
                                                                          : QPalette::ButtonText;
        QPainter painter(&result);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(result.rect(), QGuiApplication::palette().color(group, role));
        return result;
    }

    QIcon m_mask;
};

} // namespace

// The first that fits: special before general.
static constexpr Kind kinds[] = {
    {"com.adobe.pdf", "pdf"},
    {"public.directory", "folder"},
    {"com.apple.resolvable", "link"},
    {"public.image", "image"},
    {"public.audio", "audio"},
    {"public.movie", "video"},
    {"public.spreadsheet", "spreadsheet"},
    {"public.presentation", "presentation"},
    {"public.message", "mail"},
    {"public.font", "font"},
    {"public.html", "web"},
    {"com.apple.webarchive", "web"},
    {"org.idpf.epub-container", "book"},
    {"public.composite-content", "document"},
    {"public.rtf", "document"},
    {"public.archive", "archive"},
    {"public.source-code", "code"},
    {"public.script", "code"},
    {"public.xml", "code"},
    {"public.css", "code"},
    {"public.json", "code"},
    {"public.delimited-values-text", "spreadsheet"},
    {"public.text", "text"},
};

QString KPDocIcons::kindForUTI(const QString &uti)
{
    static QHash<QString, QString> known; // main thread
    const auto found = known.constFind(uti);
    if (found != known.constEnd())
        return *found;
    const QStringList tree = KPContentTypes::typeTree(uti);
    const char *icon = "generic";
    for (const Kind &kind : kinds) {
        if (tree.contains(QLatin1String(kind.type))) {
            icon = kind.icon;
            break;
        }
    }
    return *known.insert(uti, QString::fromLatin1(icon));
}

QIcon KPDocIcons::forUTI(const QString &uti)
{
    static QHash<QString, QIcon> icons; // main thread
    QIcon &icon = icons[kindForUTI(uti)];
    if (icon.isNull())
        icon = QIcon(QStringLiteral(":/icons/documents/%1.svg").arg(kindForUTI(uti)));
    return icon;
}

QIcon KPDocIcons::symbol(const QString &name)
{
    return QIcon(new SymbolEngine(QIcon(QStringLiteral(":/icons/symbols/%1.svg").arg(name))));
}
