#pragma once

#include "engine/OutputGuard.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

namespace quav {

/// One file to be converted: what is read, what is written, and the command line that does it.
struct PlannedConversion {
    QString source;
    QString output;
    QString tool = {}; ///< the name in the tools folder
    QStringList arguments = {};
    OutputGuard::Existing existing = OutputGuard::Existing::Keep; ///< as the arguments have it
};

/// Everything that pressing a tab's button would do.
struct ConversionPlan {
    std::vector<PlannedConversion> conversions;
    QStringList outputsThatAreSources; ///< left out: the output would be the source itself
    QStringList special;               ///< sources that are no files any more
    QStringList unsupported;           ///< sources of a kind that this tab is yet to convert
    QStringList unknown;               ///< sources of no kind: skipped without a word
    QStringList unwritable;            ///< left out: their outputs would have no folder to go to
    QStringList overwritten;           ///< outputs that exist and would be overwritten
    QStringList alreadyThere;          ///< outputs that exist, so that the tool will refuse
    QStringList checksumFiles;         ///< written over the outputs when all is done
};

/// Those of the outputs that stand in their folders already.
QStringList existingOutputs(const ConversionPlan& plan);

/// The first two sources whose outputs would be the same file, however the paths are spelled.
std::optional<std::pair<QString, QString>> firstSharedOutput(const ConversionPlan& plan);

/// The first output folder that files cannot be written to, as a sentence for the user.
std::optional<QString> firstUnusableFolder(const ConversionPlan& plan);

/// Takes out the conversions whose output folders cannot be written to, so that they do not keep
/// the others from being done; nothing when there are no others.
void leaveOutUnwritable(ConversionPlan& plan);

} // namespace quav
