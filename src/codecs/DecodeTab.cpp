#include "codecs/DecodeTab.h"

#include "app/FileKinds.h"
#include "codecs/DecodeFlacTask.h"
#include "codecs/DecodeOptions.h"
#include "codecs/FlacCommand.h"
#include "engine/ToolsFolder.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"
#include "platform/SpecialFile.h"

#include <algorithm>

namespace quav {

DecodeTab::DecodeTab(const Services& services)
    : ConversionTab(tabs::decode, decodeOptions(), services) {}

void DecodeTab::showFLacOptions(bool visible) {
    ListFacts facts;
    if (visible) {
        facts.addFormat(QStringLiteral("FLAC"));
    }
    options().setFacts(facts);
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
    const DecodeOptions& rows = decodeOptions();
    const OptionValues& values = options().values();
    const bool isAiff = values[rows.outputFormat] == DecodeTarget::Aiff;
    const QString extension = isAiff ? QStringLiteral(".aiff") : QStringLiteral(".wav");
    const QString output = joinPath(folder, baseName(source) + extension);
    if (output == source || isSameFile(output, source)) {
        plan.outputsThatAreSources << output;
        return;
    }
    const FlacDecodeOptions flac{isAiff ? QStringLiteral("AIFF") : QStringLiteral("WAV"),
                                 values[rows.flacKeepForeignMetadata],
                                 values[rows.flacThroughErrors]};
    plan.conversions.push_back({source, output, QStringLiteral("flac"),
                                flacDecodeArguments(flac, source, output),
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
