#include "cli/PresetsCommand.h"

#include "cli/Json.h"
#include "cli/Terminal.h"
#include "cli/Text.h"
#include "workbench/TabTable.h"

#include <QFileInfo>

#include <algorithm>

namespace quav {

namespace {

/// An option as the command line would be given it.
QString asFlag(const OptionInfo& option, const OptionValues& values) {
    const QString text = values.text(option);
    if (!option.flag) {
        return QStringLiteral("%1 = %2").arg(QLatin1StringView(option.key), text);
    }
    const QString flag = QString::fromLatin1(option.flag);
    if (option.control == OptionInfo::Control::Switch) {
        return (values.value(option).toBool() ? QStringLiteral("--") : QStringLiteral("--no-")) +
               flag;
    }
    return QStringLiteral("--%1 %2").arg(flag, text);
}

} // namespace

std::vector<TabWithOptions> tabsWithOptions() {
    std::vector<TabWithOptions> tabs;
    for (const TabRow& row : tabTable()) {
        if (row.options) {
            tabs.push_back({row.label, *row.options});
        }
    }
    return tabs;
}

PresetsCommand::PresetsCommand(const Options& options, const Settings& settings, Terminal& terminal)
    : options_(options.presets), base_(options.run.preset), flags_(options.run.options),
      settings_(settings), terminal_(terminal), prompts_(terminal, options.run.answer) {}

int PresetsCommand::refuse(const QString& reason) {
    terminal_.say(reason);
    return exitstatus::refused;
}

int PresetsCommand::statusOf(const tl::expected<void, QString>& done) {
    return done ? exitstatus::succeeded : refuse(done.error());
}

void PresetsCommand::warn(const Preset& preset) {
    if (const QString left = preset.notUnderstood(); !left.isEmpty()) {
        terminal_.say(tr("warning: %1").arg(left));
    }
}

int PresetsCommand::run() {
    using Action = PresetsOptions::Action;
    if (options_.action == Action::Import) {
        return import();
    }
    for (const TabWithOptions& tab : tabsWithOptions()) {
        const bool meant = options_.tab.isEmpty() || options_.tab == tab.name;
        if (meant && options_.action == Action::List) {
            list(tab);
        } else if (meant) {
            return runFor(tab);
        }
    }
    return exitstatus::succeeded;
}

int PresetsCommand::runFor(const TabWithOptions& tab) {
    Presets presets(tab.options, tab.name, settings_);
    switch (options_.action) {
    case PresetsOptions::Action::Show:
        return show(tab, presets);
    case PresetsOptions::Action::Save:
        return save(tab, presets);
    case PresetsOptions::Action::Delete:
        return statusOf(presets.remove(options_.name));
    case PresetsOptions::Action::Rename:
        return statusOf(presets.rename(options_.name, options_.newName));
    case PresetsOptions::Action::Export:
        return exportIt(presets);
    case PresetsOptions::Action::List:
    case PresetsOptions::Action::Import:
        break;
    }
    Q_UNREACHABLE();
}

void PresetsCommand::list(const TabWithOptions& tab) {
    constexpr int tabColumn = 10;
    for (const PresetName& preset : Presets(tab.options, tab.name, settings_).names()) {
        if (options_.json) {
            terminal_.print(jsonLine({{QStringLiteral("tab"), tab.name},
                                      {QStringLiteral("name"), preset.name},
                                      {QStringLiteral("title"), preset.title},
                                      {QStringLiteral("standard"), preset.standard}}));
            continue;
        }
        const QString line = tab.name.leftJustified(tabColumn) + text::printable(preset.name);
        terminal_.print(preset.standard ? tr("%1  (comes with the program)").arg(line) : line);
    }
}

int PresetsCommand::show(const TabWithOptions& tab, const Presets& presets) {
    const auto preset = presets.read(options_.name);
    if (!preset) {
        return refuse(preset.error());
    }
    warn(*preset);
    if (options_.json) {
        terminal_.print(jsonLine({{QStringLiteral("tab"), tab.name},
                                  {QStringLiteral("name"), options_.name},
                                  {QStringLiteral("options"), preset->values.json()}}));
        return exitstatus::succeeded;
    }
    for (const OptionInfo& option : tab.options.rows()) {
        terminal_.print(text::printable(asFlag(option, preset->values)));
    }
    return exitstatus::succeeded;
}

int PresetsCommand::save(const TabWithOptions& tab, Presets& presets) {
    auto base = presets.read(base_.isEmpty() ? Presets::asInTheSettings : base_);
    if (!base) {
        return refuse(base.error());
    }
    for (const auto& [option, text] : flags_) {
        const auto set = base->values.setFromText(*option, text);
        Q_ASSERT(set && tab.options.row(QString::fromLatin1(option->key)) == option);
    }
    warn(*base);
    const auto earlier = presets.find(options_.name);
    if (earlier && !earlier->standard &&
        !prompts_.confirm({tr("Replace the preset “%1”?").arg(options_.name),
                           tr("What it says now is lost."), tr("Cancel"), tr("Replace"), false})) {
        return exitstatus::declined;
    }
    return statusOf(presets.save(options_.name, base->values));
}

int PresetsCommand::exportIt(const Presets& presets) {
    if (options_.file.isEmpty()) {
        const auto text = presets.exported(options_.name);
        if (!text) {
            return refuse(text.error());
        }
        terminal_.print(QString::fromUtf8(*text));
        return exitstatus::succeeded;
    }
    if (QFileInfo::exists(options_.file) &&
        !prompts_.confirm({tr("Replace “%1”?").arg(options_.file), QString(), tr("Cancel"),
                           tr("Replace"), false})) {
        return exitstatus::declined;
    }
    return statusOf(presets.exportTo(options_.file, options_.name));
}

int PresetsCommand::import() {
    const QString wanted = Presets::tabIn(options_.file);
    const auto all = tabsWithOptions();
    const auto tab = std::find_if(all.begin(), all.end(),
                                  [&](const TabWithOptions& one) { return one.name == wanted; });
    if (tab == all.end() && !wanted.isEmpty()) {
        return refuse(tr("The preset “%1” is for “%2”, which this version does not know.")
                          .arg(options_.file, wanted));
    }
    // What is no preset at all says so itself.
    const TabWithOptions& known = tab == all.end() ? all.front() : *tab;
    Presets presets(known.options, known.name, settings_);
    const auto name = presets.nameIn(options_.file);
    if (!name) {
        return refuse(name.error());
    }
    const QString kept = options_.newName.isEmpty() ? *name : options_.newName;
    if (const auto done = presets.import(options_.file, kept); !done) {
        const auto taken = presets.find(kept);
        return refuse(taken && !taken->standard
                          ? tr("%1 Say --name NAME to keep it under another.").arg(done.error())
                          : done.error());
    }
    if (const auto preset = presets.read(kept)) {
        warn(*preset);
    }
    return exitstatus::succeeded;
}

} // namespace quav
