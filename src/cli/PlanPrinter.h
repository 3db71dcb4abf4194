#pragma once

#include "app/PlannedTab.h"
#include "cli/OutputFolder.h"

#include <optional>

namespace quav {

class Terminal;
class ToolsFolder;

/// Prints what a tab would do, and changes nothing: for people as a script that a shell can run,
/// the rest in comments; or as JSON objects.
class PlanPrinter {
    Q_DECLARE_TR_FUNCTIONS(PlanPrinter)

public:
    enum class Form { Script, Json };

    PlanPrinter(Terminal& terminal, const ToolsFolder& tools, Form form);

    /// True when nothing stands in the way. `destination` is what the user chose, empty for
    /// nothing, and `folder` the same where it is a folder, which may have to be made.
    bool print(const PlannedTab& tab, const QString& destination,
               const std::optional<OutputFolder>& folder);

private:
    void printFolder(const QString& path);
    void printLeftOut(const LeftOut& file);
    void printScript(const Job& job);
    QString commandOf(const ToolCall& step) const;
    void printJson(const Job& job);
    void note(const QString& event, const QString& key, const QString& value,
              const QString& sentence);

    Terminal& terminal_;
    const ToolsFolder& tools_;
    Form form_;
};

} // namespace quav
