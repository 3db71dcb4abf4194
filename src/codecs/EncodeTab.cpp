#include "codecs/EncodeTab.h"

#include "app/FileKinds.h"
#include "codecs/EncodeFlacTask.h"
#include "codecs/FlacCommand.h"
#include "engine/QUAVTaskResults.h"
#include "engine/ToolsFolder.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"

#include <QHash>
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

/// The outputs that stand in their folders already.
QStringList existingOutputs(const std::vector<PlannedConversion>& conversions) {
    QHash<QString, QSet<QString>> inFolder;
    QStringList existing;
    for (const PlannedConversion& conversion : conversions) {
        const QString folder = folderOf(conversion.output);
        auto listed = inFolder.find(folder);
        if (listed == inFolder.end()) {
            const QStringList files =
                BaseTab::getFilesFromOutputDirectory(folder, QStringLiteral("flac"));
            listed = inFolder.insert(folder, QSet<QString>(files.begin(), files.end()));
        }
        if (listed->contains(conversion.output)) {
            existing << conversion.output;
        }
    }
    return existing;
}

} // namespace

EncodeTab::EncodeTab(const Services& services)
    : ConversionTab(tabs::encode, services),
      flacVerify_(services.settings.integer(keys::flacVerifyButton) != 0),
      flacKeepForeignMetadata_(services.settings.integer(keys::flacKeepForeignMetadataButton) !=
                               0) {}

bool EncodeTab::besideSources() const {
    return services().settings.integer(keys::encodeToSourceDirectory) != 0;
}

void EncodeTab::setBesideSources(bool beside) {
    services().settings.set(keys::encodeToSourceDirectory, beside ? 1 : 0);
    Q_EMIT optionsChanged();
}

int EncodeTab::flacLevel() const {
    return services().settings.integer(keys::encodeFlacLevel);
}

void EncodeTab::setFlacLevel(int level) {
    services().settings.set(keys::encodeFlacLevel, level);
    Q_EMIT optionsChanged();
}

void EncodeTab::setFlacVerify(bool on) {
    flacVerify_ = on;
    displayRelevantOptions();
}

void EncodeTab::setFlacLax(bool on) {
    flacLax_ = on;
    displayRelevantOptions();
}

void EncodeTab::setFlacKeepForeignMetadata(bool on) {
    flacKeepForeignMetadata_ = on;
    displayRelevantOptions();
}

void EncodeTab::displayRelevantOptions() {
    services().settings.set(keys::flacVerifyButton, flacVerify_ ? 1 : 0);
    services().settings.set(keys::flacKeepForeignMetadataButton, flacKeepForeignMetadata_ ? 1 : 0);
    Q_EMIT optionsChanged();
}

void EncodeTab::planFlac(const QString& source, const QString& folder, Existing existing,
                         ConversionPlan& plan) const {
    const QString output = joinPath(folder, baseName(source) + QStringLiteral(".flac"));
    const FlacEncodeOptions options{flacLevel(), flacLax_, flacKeepForeignMetadata_, flacVerify_,
                                    existing == Existing::Overwrite};
    plan.conversions.push_back(
        {source, output, QStringLiteral("flac"), flacEncodeArguments(options, source, output)});
}

ConversionPlan EncodeTab::plan(const QString& chosenFolder, Existing existing) const {
    ConversionPlan plan;
    for (const QString& source : fileNames()) {
        if (needsAnotherDecoder(formatWord(source))) {
            plan.unsupported << source;
        } else {
            planFlac(source, outputFolder(source, chosenFolder), existing, plan);
        }
    }
    plan.overwritten = existingOutputs(plan.conversions);
    return plan;
}

std::vector<std::shared_ptr<ConversionTask>> EncodeTab::makeTasks(const ConversionPlan& plan) {
    const auto results = std::make_shared<QUAVTaskResults>();
    std::vector<std::shared_ptr<ConversionTask>> tasks;
    for (const PlannedConversion& conversion : plan.conversions) {
        tasks.push_back(std::make_shared<EncodeFlacTask>(conversion.source, services(),
                                                         services().tools.tool(conversion.tool),
                                                         conversion.arguments, results));
        results->addTaskInSet(*tasks.back());
    }
    return tasks;
}

} // namespace quav
