#pragma once

#include "app/Option.h"
#include "checksums/ChecksumOptions.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QtGlobal>

#include <array>
#include <map>
#include <optional>

namespace quav {

/// What the program's exit status says to whoever called it.
namespace exitstatus {
inline constexpr int succeeded = 0;
inline constexpr int failed = 1;
inline constexpr int refused = 2;
inline constexpr int declined = 3;

struct Meaning {
    int status;
    const char* text; ///< to be translated in the context "ExitStatus"
};
inline constexpr std::array meanings{
    Meaning{succeeded, QT_TRANSLATE_NOOP("ExitStatus", "everything succeeded")},
    Meaning{failed,
            QT_TRANSLATE_NOOP("ExitStatus", "a task failed or was cancelled, or a file "
                                            "could not be reached or converted, is damaged, "
                                            "missing, or not what its checksum says")},
    Meaning{refused,
            QT_TRANSLATE_NOOP("ExitStatus", "wrong usage, nothing to do, or something in the way")},
    Meaning{declined, QT_TRANSLATE_NOOP("ExitStatus", "a question was answered with no")},
};
} // namespace exitstatus

/// The options that were given, as texts that they take.
using OptionTexts = std::map<const OptionInfo*, QString>;

/// What every command that works on files takes. What is not set keeps what the settings say.
struct RunOptions {
    OptionTexts options;  ///< those of the tab
    QString preset;       ///< what lies below the options; empty: the settings
    QByteArrayList files; ///< as the user gave them, in whatever encoding
    std::optional<int> jobs;
    std::optional<bool> answer; ///< to every question
    bool json = false;
    bool quiet = false;
    bool dryRun = false; ///< only where the command can
    static constexpr int usualStallTimeout = 600;
    int stallTimeout = usualStallTimeout; ///< seconds; 0: a tool that does nothing is never ended
};

/// What `encode` and `decode` take beyond these.
struct ConversionArguments {
    std::optional<QByteArray> outputFolder;
};

/// What `checksum create`, `verify` and `test` take beyond these.
struct ChecksumArguments {
    ChecksumCommand command = ChecksumCommand::Test;
    std::optional<QByteArray> save; ///< create only
};

struct SettingsOptions {
    enum class Action { List, Get, Set, Reset };
    Action action = Action::List;
    QString key;
    QString value;
    bool json = false;
};

/// What `presets` takes; what lies below a preset that is saved stands with the run's options.
struct PresetsOptions {
    enum class Action { List, Show, Save, Delete, Rename, Export, Import };
    Action action = Action::List;
    QString tab; ///< empty: all of them, and for an import what the file says
    QString name;
    QString newName; ///< for `rename`, and for `import` if the file's is not to count
    QString file;    ///< for `export`; empty: the standard output
    bool json = false;
};

/// What `--completion` is to be written for.
struct CompletionOptions {
    QByteArray shell;
    QByteArray tool; ///< a file with the options of one of our tools; empty: the program's own
};

/// The whole command line, read.
struct Options {
    enum class Command { Tab, Tools, Settings, Presets, Manual, Completion };
    Command command = Command::Tools;
    QString tab; ///< the label of the tab whose button Command::Tab presses
    RunOptions run;
    ConversionArguments conversion;
    ChecksumArguments checksum;
    SettingsOptions settings;
    PresetsOptions presets;
    CompletionOptions completion;
    bool toolsAsJson = false;
};

} // namespace quav
