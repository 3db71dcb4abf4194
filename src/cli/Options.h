#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QStringList>

#include <optional>

namespace quav {

/// What the program's exit status says to whoever called it.
namespace exitstatus {
inline constexpr int succeeded = 0;
inline constexpr int failed = 1;   ///< a task failed or was cancelled
inline constexpr int refused = 2;  ///< wrong usage, or nothing to do
inline constexpr int declined = 3; ///< a question was answered with no
} // namespace exitstatus

/// The options of `encode` and `decode`. What is not set keeps what the settings say.
struct ConversionOptions {
    QByteArrayList files; ///< as the user gave them, in whatever encoding
    QString format;       ///< the target's word in capitals
    std::optional<QByteArray> outputFolder;
    bool beside = false;
    bool deleteOriginals = false;
    std::optional<int> jobs;
    std::optional<bool> answer; ///< to every question
    bool dryRun = false;
    bool json = false;
    bool quiet = false;

    bool keepForeignMetadata = false;
    std::optional<int> level; ///< encode only, like the next two
    bool verify = false;
    bool lax = false;
    bool throughErrors = false; ///< decode only
};

struct SettingsOptions {
    enum class Action { List, Get, Set, Reset };
    Action action = Action::List;
    QString key;
    QString value;
    bool json = false;
};

/// The whole command line, read.
struct Options {
    enum class Command { Encode, Decode, Tools, Settings, Manual };
    Command command = Command::Tools;
    ConversionOptions conversion;
    SettingsOptions settings;
    bool toolsAsJson = false;
};

} // namespace quav
