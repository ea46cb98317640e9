#include "KPWelcome.h"

#include "KPDocIcons.h"
#include "KPSearchFolders.h"
#include "XPFolders.h"
#include "XPPath.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

// Measures in points, on the grid of 4 that the whole window keeps.
static constexpr int margin = 32;
static constexpr int gap = 16;
static constexpr int iconSize = 64;
static constexpr int textWidth = 480;
static constexpr int folderRows = 4;
static constexpr double titleScale = 1.7;

static QLabel *makeText(const QString &text)
{
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumWidth(textWidth);
    return label;
}

static QLabel *makeTitle(const QString &text, double scale)
{
    QLabel *label = makeText(text);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * scale);
    font.setWeight(QFont::DemiBold);
    label->setFont(font);
    return label;
}

// A promise and what it means.
static QVBoxLayout *makePoint(const QString &title, const QString &text)
{
    auto *column = new QVBoxLayout;
    column->setSpacing(4);
    column->addWidget(makeTitle(title, 1));
    column->addWidget(makeText(text));
    return column;
}

namespace {

// As high as what is in it, where the screen is; with large letters on a small one it scrolls.
class Scrolled : public QScrollArea
{
public:
    explicit Scrolled(QWidget *page)
    {
        setAccessibleName(qtTrId("KPWelcomeTitle"));
        setFrameShape(NoFrame);
        setFocusPolicy(Qt::NoFocus); // what is in it has the focus
        setWidgetResizable(true);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setWidget(page);
        setMinimumWidth(page->minimumSizeHint().width());
    }
    QSize sizeHint() const override
    {
        const int width = widget()->sizeHint().width();
        return {width, widget()->heightForWidth(width)};
    }
};

} // namespace

KPWelcome::KPWelcome(QWidget *window)
    : QDialog(window), m_folders(new QListWidget),
      m_remove(new QPushButton(qtTrId("KPWelcomeRemove")))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::WindowModal);
    setWindowTitle(qtTrId("KPWelcomeTitle"));

    auto *icon = new QLabel;
    icon->setPixmap(QIcon(QStringLiteral(":/icons/app/com.brindle.murn.svg"))
                        .pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
    auto *head = new QHBoxLayout;
    head->setSpacing(gap);
    head->addWidget(icon, 0, Qt::AlignTop);
    auto *words = new QVBoxLayout;
    words->setSpacing(4);
    words->addWidget(makeTitle(qtTrId("KPWelcomeTitle"), titleScale));
    words->addWidget(makeText(qtTrId("KPWelcomeText")));
    head->addLayout(words, 1);

    m_folders->setAccessibleName(qtTrId("KPWelcomeFolders"));
    m_folders->setIconSize({16, 16});
    m_folders->setUniformItemSizes(true);
    m_folders->setTextElideMode(Qt::ElideMiddle);
    m_folders->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto *add = new QPushButton(qtTrId("KPWelcomeAdd"));
    add->setAutoDefault(false);
    m_remove->setAutoDefault(false);
    auto *buttons = new QVBoxLayout;
    buttons->addWidget(add);
    buttons->addWidget(m_remove);
    buttons->addStretch();
    auto *list = new QHBoxLayout;
    list->addWidget(m_folders, 1, Qt::AlignTop); // level with its buttons
    list->addLayout(buttons);
    auto *look = new QVBoxLayout;
    look->setSpacing(8);
    look->addLayout(makePoint(qtTrId("KPWelcomeFolders"), qtTrId("KPWelcomeFoldersText")));
    look->addLayout(list);

    auto *start = new QPushButton(qtTrId("KPWelcomeStart"));
    start->setDefault(true);
    auto *end = new QHBoxLayout;
    end->setContentsMargins(margin, 0, margin, margin - 8);
    end->addStretch();
    end->addWidget(start);

    auto *column = new QVBoxLayout;
    column->setContentsMargins(margin, margin, margin, gap);
    column->setSpacing(gap);
    column->addLayout(head);
    column->addLayout(
        makePoint(qtTrId("KPWelcomeNothingMoved"), qtTrId("KPWelcomeNothingMovedText")));
    column->addLayout(makePoint(qtTrId("KPWelcomeTags"), qtTrId("KPWelcomeTagsText")));
    column->addLayout(makePoint(qtTrId("KPWelcomePrivate"), qtTrId("KPWelcomePrivateText")));
    column->addLayout(look);
    auto *page = new QWidget;
    page->setLayout(column);
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->addWidget(new Scrolled(page));
    all->addLayout(end);

    connect(add, &QPushButton::clicked, this, &KPWelcome::addFolder);
    connect(m_remove, &QPushButton::clicked, this, &KPWelcome::removeFolder);
    connect(start, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_folders, &QListWidget::itemSelectionChanged, this, [this] {
        m_remove->setEnabled(m_folders->count() > 1 && m_folders->currentItem() != nullptr);
    });
    showFolders();
    m_folders->setFixedHeight(m_folders->sizeHintForRow(0) * folderRows +
                              2 * m_folders->frameWidth() + 8);
    start->setFocus();
}

void KPWelcome::showFolders()
{
    m_folders->clear();
    const QIcon icon = KPDocIcons::symbol(QStringLiteral("folder"));
    for (const QString &folder : KPSearchFolders::instance().userSearchFolders()) {
        const QString shown = XPPath::printable(XPFolders::abbreviateWithTilde(folder));
        auto *item = new QListWidgetItem(icon, shown, m_folders);
        item->setData(Qt::UserRole, folder);
        item->setToolTip(shown);
    }
    m_remove->setEnabled(false);
}

void KPWelcome::addFolder()
{
    auto *dialog = new QFileDialog(this, qtTrId("KPWelcomeAddTitle"), XPFolders::home());
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &folder) {
        xpGuiThread.assertHere();
        KPSearchFolders::instance().addSearchFolderAction(folder,
                                                          [self = QPointer(this)](bool isAdded) {
                                                              if (self && isAdded)
                                                                  self->showFolders();
                                                          });
    });
    dialog->open();
}

void KPWelcome::removeFolder()
{
    xpGuiThread.assertHere();
    if (const QListWidgetItem *item = m_folders->currentItem()) {
        KPSearchFolders::instance().removeSearchFolder(item->data(Qt::UserRole).toString());
        showFolders();
    }
}
