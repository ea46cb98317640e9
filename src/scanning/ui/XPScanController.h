#pragma once

#include "XPImageCaptureCoreDevice.h"
#include "XPNotificationCenter.h"
#include "XPScanImageView.h"
#include "XPScannedPages.h"

#include <QMainWindow>
#include <functional>
#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QListWidget;
class QProgressBar;
class QPushButton;
class QSlider;
class QToolButton;
class XPPageLoader;
struct XPScanProfile;
class XPStarsEditor;
class XPTagsEditor;

// The scan window: pages from the scanner and from files, corrected, tagged, and filed as one PDF.
//
// It is made when it is first asked for and shows the pages of an interrupted scan, if there are
// any. Threads: main; pictures are read and documents made on threads of its own.
class XPScanController : public QMainWindow, private XPImageCaptureCoreDevice::ScanController
{
    Q_OBJECT

public:
    // What the program does for it.
    struct Hooks
    {
        // A document was filed: today's documents are to be shown.
        std::function<void(const QString &path)> filed;
        std::function<QStringList()> knownTags;
        // The scanner's process; empty: ours, where it is installed.
        QByteArray scannerProgram = {};
    };

    explicit XPScanController(Hooks hooks);
    ~XPScanController() override;

    bool hasPages() const { return m_pages.numberOfPages() > 0; }
    // Asks what becomes of pages that are not filed; `answer` once, with whether quitting goes on.
    void askToQuit(std::function<void(bool)> answer);

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    enum class Tool { None, Crop, Straighten, Contrast };

    void scanNewPageAction();
    // Files the pages as one document and goes on with the next.
    void nextDocumentAction();
    void nextPageAction();
    void previousPageAction();
    void deletePageAction();
    void rotateAction(); // clockwise; with Alt the other way
    void doneAction();
    void cancelAction();
    void forceCancelAction();

    void buildToolbar();
    QWidget *buildSettings();
    QWidget *buildProfiles();
    QWidget *buildButtons();
    void connectParts();

    void addPageImagePath(const QString &path) override;
    void scanProgress(int percent) override;
    void scannerFailed(const QString &title, const QString &text, bool isEmpty) override;
    void scanningComplete();
    void showScanners();
    void showPapers();
    void chooseScanner();
    void useProfile(const XPScanProfile &profile);
    void showProfiles();
    void fillProfileMenu();
    void saveProfile();

    void addFiles(const QStringList &paths);
    void showPage();
    void showStrip();
    void updateButtons();
    void setTool(Tool tool);
    void applyTool();
    void cleanUpPage(int index);
    XPPageEdit currentEdit() const;
    void setCurrentEdit(const XPPageEdit &edit);
    void leaveAllModes();
    void readTags();
    void tagsEdited();
    void finish(const QString &toPath);
    void chooseProportion();
    void finished(const XPResult<QString> &path);
    void closeForGood(bool proceeds);

    const Hooks m_hooks;
    XPScannedPages m_pages;
    XPImageCaptureCoreDevice m_device{this, m_hooks.scannerProgram};
    std::unique_ptr<XPPageLoader> m_loader;
    std::vector<XPObservation> m_observations;
    std::function<void(bool)> m_pendingQuit;
    Tool m_tool = Tool::None;
    XPPageEdit m_edit; // of the current page, while a tool is at work
    QString m_shownPath;
    QImage m_shown; // the current page as it came, of the size of a screen
    bool m_isLoading = false;
    bool m_isFiling = false;
    bool m_goesOn = false;    // the feeder may hold more
    int m_filing = 0;         // how many pages are
    bool m_staysOpen = false; // what is filed is not the last document

    XPScanImageView *m_view = nullptr;
    QListWidget *m_strip = nullptr;
    QComboBox *m_profiles = nullptr;
    QToolButton *m_profileMenu = nullptr;
    QComboBox *m_scannerPopup = nullptr;
    QComboBox *m_paperPopup = nullptr;
    QComboBox *m_mode = nullptr;
    QComboBox *m_resolution = nullptr;
    QCheckBox *m_duplex = nullptr;
    QCheckBox *m_cleanUp = nullptr;
    QCheckBox *m_upright = nullptr;
    QCheckBox *m_skipBlank = nullptr;
    QCheckBox *m_separate = nullptr;
    QCheckBox *m_text = nullptr;
    XPTagsEditor *m_tags = nullptr;
    XPStarsEditor *m_stars = nullptr;
    QLabel *m_counter = nullptr;
    QLabel *m_note = nullptr;
    QProgressBar *m_progress = nullptr;
    QSlider *m_contrast = nullptr;
    QComboBox *m_proportion = nullptr; // of the crop
    QPushButton *m_scan = nullptr;
    QPushButton *m_stop = nullptr;
    QPushButton *m_done = nullptr;
    QPushButton *m_next = nullptr;
    QPushButton *m_apply = nullptr;
    QPushButton *m_leave = nullptr;
    QAction *m_rotate = nullptr;
    QAction *m_crop = nullptr;
    QAction *m_straighten = nullptr;
    QAction *m_contrastTool = nullptr;
    QAction *m_delete = nullptr;
    QAction *m_interleave = nullptr;
};
