#pragma once

#include "app/Presets.h"
#include "cli/Options.h"
#include "cli/TerminalPrompts.h"

#include <QCoreApplication>

#include <vector>

namespace quav {

class Settings;
class Terminal;

/// A tab by the word for it, with its options.
struct TabWithOptions {
    QString name;
    const OptionTable& options;
};

std::vector<TabWithOptions> tabsWithOptions();

/// `presets`: lists, shows, makes and changes presets, and carries them over.
class PresetsCommand {
    Q_DECLARE_TR_FUNCTIONS(PresetsCommand)

public:
    PresetsCommand(const Options& options, const Settings& settings, Terminal& terminal);

    /// The exit status.
    int run();

private:
    void list(const TabWithOptions& tab);
    int runFor(const TabWithOptions& tab);
    int show(const TabWithOptions& tab, const Presets& presets);
    int save(const TabWithOptions& tab, Presets& presets);
    int exportIt(const Presets& presets);
    int import();
    int statusOf(const tl::expected<void, QString>& done);
    int refuse(const QString& reason);
    void warn(const Preset& preset);

    PresetsOptions options_;
    QString base_;
    OptionTexts flags_;
    const Settings& settings_;
    Terminal& terminal_;
    TerminalPrompts prompts_;
};

} // namespace quav
