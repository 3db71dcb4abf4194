#pragma once

#include <QString>

#include <memory>
#include <vector>

namespace quav {

class BaseTab;
class OptionTable;
struct Services;

/// What the program knows of a tab before there is one. The window has a page for every row, the
/// command line a command for every row with a word.
struct TabRow {
    QString label;       ///< what everything looks the tab up by
    const char* name;    ///< to be translated in the context "Tabs"
    const char* icon;    ///< as icon themes call it
    const char* command; ///< its word on the command line; none for a tab that does no work
    std::unique_ptr<BaseTab> (*make)(const Services& services); ///< none likewise
    const OptionTable* options;                                 ///< none likewise

    /// What the user reads on the tab.
    QString title() const;
};

/// All tabs, in their order.
const std::vector<TabRow>& tabTable();

} // namespace quav
