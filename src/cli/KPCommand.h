#pragma once

#include <vector>

class KPCommandLine;
class KPCommandOutput;

struct KPCommandOption
{
    const char *name;  // with its dashes
    const char *value; // what the help calls its value; nullptr: a flag
    const char *help;
};

// A command of the shell: what main() dispatches on and --help prints, so that the two agree.
struct KPCommand
{
    const char *name;
    const char *synopsis; // what follows the name
    const char *summary;  // one line
    const char *details;  // whole lines, after the summary; may be empty
    std::vector<KPCommandOption> options;
    // Answers the exit status.
    int (*run)(const KPCommandLine &line, KPCommandOutput &output);
    // Whether it wants the clipboard and fonts; where there is no display it has fonts alone.
    bool needsGui = false;
};

// Exit statuses of every command.
enum KPExitStatus {
    KPExitDone = 0,
    KPExitFailed = 1,
    KPExitUsage = 2,
    KPExitInterrupted = 130, // as the shell tells of SIGINT
};

// Each in a file of its own.
extern const KPCommand kpTagsCommand;
extern const KPCommand kpTagCommand;
extern const KPCommand kpTagRenameCommand;
extern const KPCommand kpTagDeleteCommand;
extern const KPCommand kpRateCommand;
extern const KPCommand kpCommentCommand;
extern const KPCommand kpFindCommand;
extern const KPCommand kpBookmarksCommand;
extern const KPCommand kpInfoCommand;
extern const KPCommand kpTypesCommand;
extern const KPCommand kpQueryCommand;
extern const KPCommand kpFileCommand;
extern const KPCommand kpManageCommand;
extern const KPCommand kpUnmanageCommand;
extern const KPCommand kpPasteCommand;
extern const KPCommand kpCaptureCommand;
extern const KPCommand kpBackupCommand;
extern const KPCommand kpRestoreCommand;
extern const KPCommand kpHealedCommand;
extern const KPCommand kpMirrorCommand;
extern const KPCommand kpDuplicatesCommand;
extern const KPCommand kpExportCommand;
extern const KPCommand kpImportArchiveCommand;
extern const KPCommand kpImportCommand;
extern const KPCommand kpThumbnailCommand;
extern const KPCommand kpScanCommand;
extern const KPCommand kpOcrCommand;
extern const KPCommand kpCombineCommand;
extern const KPCommand kpOpenCommand;
extern const KPCommand kpRevealCommand;
extern const KPCommand kpIndexCommand;
extern const KPCommand kpDefaultsCommand;
