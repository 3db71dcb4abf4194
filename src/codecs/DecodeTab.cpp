#include "codecs/DecodeTab.h"

#include "app/FileKinds.h"
#include "codecs/DecodeFlacTask.h"
#include "codecs/FlacCommand.h"
#include "engine/ToolsFolder.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"

#include <algorithm>

namespace quav {

DecodeTab::DecodeTab(const Services& services) : ConversionTab(tabs::decode, services) {}

void DecodeTab::setOutputFormat(const QString& word) {
    outputFormat_ = word;
    Q_EMIT optionsChanged();
}

bool DecodeTab::besideSources() const {
    return services().settings.integer(keys::decodeToSourceDirectory) != 0;
}

void DecodeTab::setBesideSources(bool beside) {
    services().settings.set(keys::decodeToSourceDirectory, beside ? 1 : 0);
    Q_EMIT optionsChanged();
}

void DecodeTab::setDecodeFlacThroughErrors(bool on) {
    decodeFlacThroughErrors_ = on;
    Q_EMIT optionsChanged();
}

void DecodeTab::setKeepForeignMetadata(bool on) {
    keepForeignMetadata_ = on;
    Q_EMIT optionsChanged();
}

void DecodeTab::showFLacOptions(bool visible) {
    flacOptionsVisible_ = visible;
    Q_EMIT optionsChanged();
}

void DecodeTab::filesAdded() {
    const QStringList names = fileNames();
    const auto isFlac = [](const QString& name) { return formatWord(name) == u"FLAC"; };
    if (std::any_of(names.begin(), names.end(), isFlac)) {
        showFLacOptions(true);
    }
    ConversionTab::filesAdded();
}

void DecodeTab::clearFiles() {
    showFLacOptions(false);
    ConversionTab::clearFiles();
}

void DecodeTab::planFlac(const QString& source, const QString& folder, ConversionPlan& plan) const {
    const QString extension =
        outputFormat_ == u"AIFF" ? QStringLiteral(".aiff") : QStringLiteral(".wav");
    const QString output = joinPath(folder, baseName(source) + extension);
    if (output == source || isSameFile(output, source)) {
        plan.outputsThatAreSources << output;
        return;
    }
    const FlacDecodeOptions options{outputFormat_, keepForeignMetadata_, decodeFlacThroughErrors_};
    plan.conversions.push_back(
        {source, output, QStringLiteral("flac"), flacDecodeArguments(options, source, output)});
}

ConversionPlan DecodeTab::plan(const QString& chosenFolder, Existing /*existing*/) const {
    ConversionPlan plan;
    for (const QString& source : fileNames()) {
        const QString word = formatWord(source);
        if (word == u"FLAC") {
            planFlac(source, outputFolder(source, chosenFolder), plan);
        } else if (acceptedExtensions(tabs::decode).contains(word)) {
            plan.unsupported << source;
        }
    }
    return plan;
}

std::vector<std::shared_ptr<ConversionTask>> DecodeTab::makeTasks(const ConversionPlan& plan) {
    std::vector<std::shared_ptr<ConversionTask>> tasks;
    for (const PlannedConversion& conversion : plan.conversions) {
        tasks.push_back(std::make_shared<DecodeFlacTask>(conversion.source, services(),
                                                         services().tools.tool(conversion.tool),
                                                         conversion.arguments));
    }
    return tasks;
}

} // namespace quav
