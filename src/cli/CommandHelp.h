#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace quav {

struct OptionHelp {
    QString names; ///< "-h,--help", or the word that stands for an operand
    QString value; ///< what follows the option: "N"; empty for a switch
    QString description;
    QString defaultText; ///< empty when there is nothing to say
    bool operand = false;
    bool severalTimes = false;
    bool required = false;
    QStringList choices; ///< the words that may follow; empty for any
};

/// The tree of commands with their options, as data for whoever describes it.
struct CommandHelp {
    QString name; ///< the whole command: "quav-cli settings get"
    QString description;
    std::vector<OptionHelp> options;
    std::vector<CommandHelp> commands;
};

} // namespace quav
