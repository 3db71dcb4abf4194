#pragma once

#include "cli/OutputFolder.h"
#include "codecs/ConversionTab.h"

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

    /// True when nothing stands in the way. Without a folder the outputs go beside the sources.
    bool print(const ConversionTab& tab, const std::optional<OutputFolder>& folder);

private:
    void printFolder(const QString& path);
    void printConversion(const PlannedConversion& conversion);
    void note(const QString& event, const QString& key, const QString& value,
              const QString& sentence);

    Terminal& terminal_;
    const ToolsFolder& tools_;
    Form form_;
};

} // namespace quav
