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
QMap<QString, QStringList> outputsByFolder(const ConversionPlan& plan) {
    QMap<QString, QStringList> outputs;
    QHash<QString, QString> firstSpelling; // by the real folder
    QHash<QString, QString> spellings;     // to the first one of the same folder
    for (const PlannedConversion& conversion : plan.conversions) {
        const QString folder = folderOf(conversion.output);
        QString& spelling = spellings[folder];
        if (spelling.isEmpty()) {
            QString& first = firstSpelling[folderOf(withRealFolder(conversion.output))];
            first = first.isEmpty() ? folder : first;
            spelling = first;
        }
        outputs[spelling] << conversion.output;
    }
    return outputs;
}

} // namespace

EncodeTab::EncodeTab(const Services& services)
    : ConversionTab(tabs::encode, encodeOptions(), services) {}

ConversionPlan EncodeTab::plan(const QString& chosenFolder) const {
    ConversionPlan plan;
    for (const QString& source : fileNames()) {
        if (whyNotOpened(source)) {
            plan.special << source;
            continue;
        }
        if (needsAnotherDecoder(formatWord(source))) {
            plan.unsupported << source;
            continue;
        }
        plan.conversions.push_back({source, joinPath(outputFolder(source, chosenFolder),
                                                     baseName(source) + QStringLiteral(".flac"))});
    }
    leaveOutUnwritable(plan);
    plan.overwritten = existingOutputs(plan);
    const auto existing =
        plan.overwritten.isEmpty() ? OutputGuard::Existing::Keep : OutputGuard::Existing::Overwrite;
    const EncodeOptions& rows = encodeOptions();
    const OptionValues& values = options().values();
    const FlacEncodeOptions flac{values[rows.flacLevel], values[rows.flacLax],
                                 values[rows.flacKeepForeignMetadata], values[rows.flacVerify],
                                 existing == OutputGuard::Existing::Overwrite};
    for (PlannedConversion& conversion : plan.conversions) {
        conversion.tool = QStringLiteral("flac");
        conversion.arguments = flacEncodeArguments(flac, conversion.source, conversion.output);
        conversion.existing = existing;
    }
    if (values[rows.generateFFP]) {
        for (const QString& folder : outputsByFolder(plan).keys()) {
            plan.checksumFiles << checksumfiles::pathIn(folder, ChecksumKind::Ffp,
                                                        services().settings);
        }
    }
    return plan;
}

std::shared_ptr<QUAVTask> EncodeTab::makeFollowUp(const ConversionPlan& plan) const {
    if (plan.checksumFiles.isEmpty()) {
        return nullptr;
    }
    const Settings& settings = services().settings;
    return std::make_shared<CreateFFPTask>(services().queue, outputsByFolder(plan),
                                           checksumfiles::fixedName(ChecksumKind::Ffp, settings),
                                           settings);
}

std::shared_ptr<ConversionTask>
EncodeTab::makeTask(const PlannedConversion& conversion,
                    const std::shared_ptr<QUAVTaskResults>& batch) const {
    auto task = std::make_shared<EncodeFlacTask>(conversion.source, services(),
                                                 services().tools.tool(conversion.tool),
                                                 conversion.arguments, batch);
    batch->addTaskInSet(*task);
    return task;
}

} // namespace quav
