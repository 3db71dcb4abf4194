#include "codecs/ConversionPlan.h"

#include "app/BaseTab.h"
#include "platform/PathNames.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <iterator>

namespace quav {

namespace {

/// Why files cannot be written to a folder, as a sentence for the user.
std::optional<QString> whyUnusable(const QString& folder) {
    const QFileInfo info(folder);
    if (!info.isDir()) {
        return QCoreApplication::translate("ConversionPlan",
                                           "The output folder “%1” does not exist.")
            .arg(folder);
    }
    if (!info.isWritable()) {
        return QCoreApplication::translate("ConversionPlan",
                                           "The output folder “%1” cannot be written to.")
            .arg(folder);
    }
    return std::nullopt;
}

} // namespace

QStringList existingOutputs(const ConversionPlan& plan) {
    QHash<QString, QSet<QString>> inFolder;
    QStringList existing;
    for (const PlannedConversion& conversion : plan.conversions) {
        const QString& output = conversion.output;
        const QString folder = folderOf(output);
        auto listed = inFolder.find(folder);
        if (listed == inFolder.end()) {
            const QStringList files =
                BaseTab::getFilesFromOutputDirectory(folder, pathExtension(output));
            listed = inFolder.insert(folder, QSet<QString>(files.begin(), files.end()));
        }
        if (listed->contains(output)) {
            existing << output;
        }
    }
    return existing;
}

std::optional<std::pair<QString, QString>> firstSharedOutput(const ConversionPlan& plan) {
    QHash<QString, QString> sourceOf;
    QHash<QString, QString> realFolders;
    for (const PlannedConversion& conversion : plan.conversions) {
        const QString folder = folderOf(conversion.output);
        auto real = realFolders.constFind(folder);
        if (real == realFolders.constEnd()) {
            real = realFolders.insert(folder, folderOf(withRealFolder(conversion.output)));
        }
        const QString output = joinPath(*real, lastPathComponent(conversion.output));
        const auto other = sourceOf.constFind(output);
        if (other != sourceOf.constEnd()) {
            return std::pair(*other, conversion.source);
        }
        sourceOf.insert(output, conversion.source);
    }
    return std::nullopt;
}

std::optional<QString> firstUnusableFolder(const ConversionPlan& plan) {
    QSet<QString> seen;
    for (const PlannedConversion& conversion : plan.conversions) {
        const QString folder = folderOf(conversion.output);
        if (seen.contains(folder)) {
            continue;
        }
        seen.insert(folder);
        if (auto reason = whyUnusable(folder)) {
            return reason;
        }
    }
    return std::nullopt;
}

void leaveOutUnwritable(ConversionPlan& plan) {
    QHash<QString, bool> usable;
    const auto isUsable = [&usable](const PlannedConversion& conversion) {
        const QString folder = folderOf(conversion.output);
        if (const auto known = usable.constFind(folder); known != usable.constEnd()) {
            return *known;
        }
        return *usable.insert(folder, !whyUnusable(folder));
    };
    const auto left =
        std::stable_partition(plan.conversions.begin(), plan.conversions.end(), isUsable);
    if (left == plan.conversions.begin()) {
        return;
    }
    std::transform(left, plan.conversions.end(), std::back_inserter(plan.unwritable),
                   [](const PlannedConversion& conversion) { return conversion.source; });
    plan.conversions.erase(left, plan.conversions.end());
}

} // namespace quav
