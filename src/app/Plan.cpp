#include "app/Plan.h"

#include "app/BaseTab.h"
#include "platform/PathNames.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <algorithm>

namespace quav {

namespace {

/// Why files cannot be written to a folder, as a sentence for the user.
std::optional<QString> whyUnusable(const QString& folder) {
    const QFileInfo info(folder);
    if (!info.isDir()) {
        return QCoreApplication::translate("Plan", "The output folder “%1” does not exist.")
            .arg(folder);
    }
    if (!info.isWritable()) {
        return QCoreApplication::translate("Plan", "The output folder “%1” cannot be written to.")
            .arg(folder);
    }
    return std::nullopt;
}

} // namespace

QStringList Plan::leftOutPaths(LeftOut::Why why) const {
    QStringList paths;
    for (const LeftOut& file : leftOut) {
        if (file.why == why) {
            paths << file.path;
        }
    }
    return paths;
}

QStringList existingOutputs(const Plan& plan, OutputGuard::Existing existing) {
    QHash<QString, QSet<QString>> inFolder;
    QStringList found;
    for (const Job& job : plan.jobs) {
        if (job.existing != existing) {
            continue;
        }
        for (const QString& output : job.outputs) {
            const QString extension = pathExtension(output);
            const QString listing = joinPath(folderOf(output), extension);
            auto listed = inFolder.find(listing);
            if (listed == inFolder.end()) {
                const QStringList files =
                    BaseTab::getFilesFromOutputDirectory(folderOf(output), extension);
                listed = inFolder.insert(listing, QSet<QString>(files.begin(), files.end()));
            }
            if (listed->contains(output)) {
                found << output;
            }
        }
    }
    return found;
}

std::optional<std::pair<QString, QString>> firstSharedOutput(const Plan& plan) {
    QHash<QString, QString> sourceOf;
    QHash<QString, QString> realFolders;
    for (const Job& job : plan.jobs) {
        for (const QString& path : job.outputs) {
            const QString folder = folderOf(path);
            auto real = realFolders.constFind(folder);
            if (real == realFolders.constEnd()) {
                real = realFolders.insert(folder, folderOf(withRealFolder(path)));
            }
            const QString output = joinPath(*real, lastPathComponent(path));
            const auto other = sourceOf.constFind(output);
            if (other != sourceOf.constEnd()) {
                return std::pair(*other, job.source());
            }
            sourceOf.insert(output, job.source());
        }
    }
    return std::nullopt;
}

std::optional<QString> firstUnusableFolder(const Plan& plan) {
    QSet<QString> seen;
    for (const Job& job : plan.jobs) {
        for (const QString& output : job.outputs) {
            const QString folder = folderOf(output);
            if (seen.contains(folder)) {
                continue;
            }
            seen.insert(folder);
            if (auto reason = whyUnusable(folder)) {
                return reason;
            }
        }
    }
    return std::nullopt;
}

void leaveOutUnwritable(Plan& plan) {
    QHash<QString, bool> usable;
    const auto isUsable = [&usable](const QString& output) {
        const QString folder = folderOf(output);
        if (const auto known = usable.constFind(folder); known != usable.constEnd()) {
            return *known;
        }
        return *usable.insert(folder, !whyUnusable(folder));
    };
    const auto left =
        std::stable_partition(plan.jobs.begin(), plan.jobs.end(), [&](const Job& job) {
            return std::all_of(job.outputs.begin(), job.outputs.end(), isUsable);
        });
    if (left == plan.jobs.begin()) {
        return;
    }
    std::for_each(left, plan.jobs.end(), [&plan](const Job& job) {
        plan.leaveOut(job.source(), LeftOut::Why::Unwritable);
    });
    plan.jobs.erase(left, plan.jobs.end());
}

} // namespace quav
