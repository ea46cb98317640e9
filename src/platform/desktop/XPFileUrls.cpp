#include "XPFileUrls.h"

#include "XPPath.h"

#include <QMimeData>

QByteArray XPFileUrls::encoded(const QString &path)
{
    const QByteArray bytes = XPPath::encode(path);
    return bytes.isEmpty() ? bytes : "file://" + bytes.toPercentEncoding("/");
}

QUrl XPFileUrls::url(const QString &path)
{
    return QUrl::fromEncoded(encoded(path), QUrl::StrictMode);
}

QMimeData *XPFileUrls::mimeData(const QStringList &paths)
{
    QByteArrayList urls;
    QStringList texts;
    for (const QString &path : paths) {
        if (const QByteArray url = encoded(path); !url.isEmpty()) {
            urls.append(url);
            texts.append(XPPath::printable(path));
        }
    }
    auto *data = new QMimeData;
    data->setData(QStringLiteral("text/uri-list"), urls.join("\r\n") + "\r\n");
    data->setData(QStringLiteral("x-special/gnome-copied-files"), "copy\n" + urls.join('\n'));
    data->setText(texts.join(u'\n'));
    return data;
}

QStringList XPFileUrls::paths(const QMimeData *data)
{
    return paths(data->data(QStringLiteral("text/uri-list")));
}

QStringList XPFileUrls::paths(const QByteArray &uriList)
{
    static constexpr QByteArrayView scheme("file://");
    static constexpr QByteArrayView thisMachine("localhost");
    QStringList paths;
    for (const QByteArray &line : uriList.split('\n')) {
        const QByteArray url = line.trimmed();
        if (url.size() < scheme.size() || url.first(scheme.size()).toLower() != scheme)
            continue;
        QByteArray rest = url.mid(scheme.size());
        if (rest.startsWith(thisMachine))
            rest.remove(0, thisMachine.size());
        rest.truncate(rest.indexOf('?') < 0 ? rest.size() : rest.indexOf('?'));
        rest.truncate(rest.indexOf('#') < 0 ? rest.size() : rest.indexOf('#'));
        const QByteArray path = QByteArray::fromPercentEncoding(rest);
        if (path.startsWith('/') && !path.contains('\0'))
            paths.append(XPPath::decode(path));
    }
    return paths;
}
