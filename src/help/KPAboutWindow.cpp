#include "KPAboutWindow.h"

#include "KPLook.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

static constexpr int iconSize = 64;
static constexpr QSize usualSize{520, 560};

namespace {

struct NamedVersion
{
    const char *name;
    const char *version;
};

constexpr NamedVersion buildVersions[] = {
#include "KPBuildVersions.inc"
};

// SPDX identifiers.
constexpr NamedVersion licences[] = {
    {"ICU", "Unicode-DFS-2016"},
    {"GLib", "LGPL-2.1-or-later"},
    {"libxcb", "MIT"},
    {"SQLite", "blessing"},
    {"CRoaring", "Apache-2.0"},
    {"Poppler", "GPL-2.0-or-later"},
    {"Exiv2", "GPL-2.0-or-later"},
    {"libheif", "LGPL-3.0-or-later"},
    {"LibTIFF", "libtiff"},
    {"TagLib", "LGPL-2.1-only OR MPL-1.1"},
    {"libarchive", "BSD-2-Clause"},
    {"Expat", "MIT"},
    {"GMime", "LGPL-2.1-or-later"},
    {"gumbo", "Apache-2.0"},
    {"uchardet", "MPL-1.1 OR GPL-2.0-or-later"},
    {"libseccomp", "LGPL-2.1-only"},
    {"SANE", "GPL-2.0-or-later"},
    {"qpdf", "Apache-2.0"},
    {"zlib", "Zlib"},
};

} // namespace

QList<KPLibraryVersion> kpLibraryVersions()
{
    QList<KPLibraryVersion> all = {{"Qt", qVersion(), "LGPL-3.0-only"}};
    for (const NamedVersion &library : buildVersions) {
        for (const NamedVersion &licence : licences) {
            if (qstrcmp(library.name, licence.name) == 0)
                all.append({library.name, library.version, licence.version});
        }
    }
    return all;
}

static QLabel *text(const QString &words)
{
    auto *label = new QLabel(words);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

static QTreeWidget *makeList()
{
    auto *list = new QTreeWidget;
    list->setAccessibleName(qtTrId("KPAboutParts"));
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setHeaderLabels(
        {qtTrId("KPAboutPart"), qtTrId("KPAboutVersion"), qtTrId("KPAboutLicence")});
    for (const KPLibraryVersion &library : kpLibraryVersions())
        new QTreeWidgetItem(list, {QString::fromLatin1(library.name),
                                   QString::fromLatin1(library.version),
                                   QString::fromLatin1(library.licence)});
    list->header()->resizeSection(0, 150);
    list->header()->resizeSection(1, 110);
    return list;
}

KPAboutWindow::KPAboutWindow(QWidget *parent) : QDialog(parent)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(qtTrId("KPAboutWindowTitle"));
    resize(usualSize);
    auto *icon = new QLabel;
    icon->setPixmap(QIcon(QStringLiteral(":/icons/app/com.brindle.murn.svg"))
                        .pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
    auto *title = text(qtTrId("KPAboutTitle").arg(QCoreApplication::applicationVersion()));
    title->setFont(KPLook::font(KPLook::Type::Heading));
    auto *words = new QVBoxLayout;
    words->addWidget(title);
    words->addWidget(text(qtTrId("KPAboutText")));
    auto *head = new QHBoxLayout;
    head->setSpacing(16);
    head->addWidget(icon, 0, Qt::AlignTop);
    head->addLayout(words, 1);
    auto *parts = new QLabel(qtTrId("KPAboutParts"));
    parts->setFont(KPLook::font(KPLook::Type::Title));
    auto *close = new QPushButton(qtTrId("KPDone"));
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(24, 24, 24, 16);
    column->setSpacing(12);
    column->addLayout(head);
    column->addWidget(parts);
    column->addWidget(makeList(), 1);
    column->addWidget(close, 0, Qt::AlignRight);
}
