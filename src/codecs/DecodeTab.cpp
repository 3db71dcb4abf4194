#include "codecs/DecodeTab.h"

#include "app/FileKinds.h"
#include "codecs/DecodeFlacTask.h"
#include "codecs/FlacCommand.h"
#include "engine/ToolsFolder.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"
#include "platform/SpecialFile.h"

#include <algorithm>

namespace quav {

DecodeTab::DecodeTab(const Services& services)
    : ConversionTab(tabs::decode, keys::decodeToSourceDirectory, services) {}

void DecodeTab::setOutputFormat(const QString& word) {
    outputFormat_ = word;
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
    plan.conversions.push_back({source, output, QStringLiteral("flac"),
                                flacDecodeArguments(options, source, output),
                                OutputGuard::Existing::Keep});
}

bool DecodeTab::isOfNoKind(const QString& source) const {
    return !acceptedExtensions(label()).contains(formatWord(source));
}

ConversionPlan DecodeTab::plan(const QString& chosenFolder) const {
    ConversionPlan plan;
    for (const QString& source : fileNames()) {
        if (whyNotOpened(source)) {
            plan.special << source;
        } else if (formatWord(source) == u"FLAC") {
            planFlac(source, outputFolder(source, chosenFolder), plan);
        } else if (isOfNoKind(source)) {
            plan.unknown << source;
        } else {
            plan.unsupported << source;
        }
    }
    leaveOutUnwritable(plan);
    plan.alreadyThere = existingOutputs(plan);
    return plan;
}

std::shared_ptr<ConversionTask>
DecodeTab::makeTask(const PlannedConversion& conversion,
                    const std::shared_ptr<QUAVTaskResults>& /*batch*/) const {
    return std::make_shared<DecodeFlacTask>(conversion.source, services(),
                                            services().tools.tool(conversion.tool),
                                            conversion.arguments);
}

} // namespace quav
