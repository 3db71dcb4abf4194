#include "codecs/EncodeTab.h"

#include "app/FileKinds.h"
#include "checksums/ChecksumFiles.h"
#include "checksums/CreateFFPTask.h"
#include "codecs/EncodeFlacTask.h"
#include "codecs/EncodeOptions.h"
#include "codecs/FlacCommand.h"
#include "engine/QUAVTaskQueue.h"
#include "engine/QUAVTaskResults.h"
#include "engine/ToolsFolder.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"
#include "platform/SpecialFile.h"

#include <QHash>
#include <QMap>
#include <QSet>

namespace quav {

namespace {

/// Kinds that `flac` cannot read itself.
bool needsAnotherDecoder(const QString& word) {
    static const QSet<QString> foreign{QStringLiteral("SHN"), QStringLiteral("APE"),
                                       QStringLiteral("M4A"), QStringLiteral("WV"),
                                       QStringLiteral("TTA")};
    return foreign.contains(word);
}

/// By the folders that get a list each, whatever the spellings of one of them: of two lists in one
/// place the second would replace the first.
QMap<QString, QStringList> outputsByFolder(const Plan& plan) {
    QMap<QString, QStringList> outputs;
    QHash<QString, QString> firstSpelling; // by the real folder
    QHash<QString, QString> spellings;     // to the first one of the same folder
    for (const Job& job : plan.jobs) {
        const QString output = job.output();
        const QString folder = folderOf(output);
        QString& spelling = spellings[folder];
        if (spelling.isEmpty()) {
            QString& first = firstSpelling[folderOf(withRealFolder(output))];
            first = first.isEmpty() ? folder : first;
            spelling = first;
        }
        outputs[spelling] << output;
    }
    return outputs;
}

} // namespace

EncodeTab::EncodeTab(const Services& services)
    : ConversionTab(tabs::encode, encodeOptions(), services) {}

Plan EncodeTab::plan(const OptionValues& values, const QString& chosenFolder) const {
    Plan plan;
    for (const QString& source : fileNames()) {
        if (whyNotOpened(source)) {
            plan.leaveOut(source, LeftOut::Why::NoFile);
            continue;
        }
        if (needsAnotherDecoder(formatWord(source))) {
            plan.leaveOut(source, LeftOut::Why::NotYet);
            continue;
        }
        plan.jobs.push_back({.sources = {source},
                             .outputs = {joinPath(outputFolder(source, chosenFolder, values),
                                                  baseName(source) + QStringLiteral(".flac"))}});
    }
    leaveOutUnwritable(plan);
    const auto existing = overwriteAllOrNone(plan);
    const EncodeOptions& rows = encodeOptions();
    const FlacEncodeOptions flac{values[rows.flacLevel], values[rows.flacLax],
                                 values[rows.flacKeepForeignMetadata], values[rows.flacVerify],
                                 existing == OutputGuard::Existing::Overwrite};
    for (Job& job : plan.jobs) {
        job.steps = {
            {QStringLiteral("flac"), flacEncodeArguments(flac, job.source(), job.output())}};
    }
    if (values[rows.generateFFP]) {
        for (const QString& folder : outputsByFolder(plan).keys()) {
            planChecksumFile(plan,
                             checksumfiles::pathIn(folder, ChecksumKind::Ffp, services().settings));
        }
    }
    return plan;
}

std::shared_ptr<QUAVTask> EncodeTab::makeFollowUp(const Plan& plan) const {
    if (plan.checksumFiles.isEmpty()) {
        return nullptr;
    }
    const Settings& settings = services().settings;
    return std::make_shared<CreateFFPTask>(services().queue, outputsByFolder(plan),
                                           checksumfiles::fixedName(ChecksumKind::Ffp, settings),
                                           settings);
}

std::shared_ptr<ConversionTask>
EncodeTab::makeConversion(const Job& job, const std::shared_ptr<QUAVTaskResults>& batch) const {
    const ToolCall& call = job.steps.front();
    return std::make_shared<EncodeFlacTask>(
        job.source(), services(), services().tools.tool(call.tool), call.arguments, batch);
}

} // namespace quav
