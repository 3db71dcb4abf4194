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

void DecodeTab::planFlac(const QString& source, const QString& folder, const OptionValues& values,
                         Plan& plan) const {
    const DecodeOptions& rows = decodeOptions();
    const bool isAiff = values[rows.outputFormat] == DecodeTarget::Aiff;
    const QString extension = isAiff ? QStringLiteral(".aiff") : QStringLiteral(".wav");
    const QString output = joinPath(folder, baseName(source) + extension);
    if (output == source || isSameFile(output, source)) {
        plan.leaveOut(output, LeftOut::Why::OwnOutput);
        return;
    }
    const FlacDecodeOptions flac{isAiff ? QStringLiteral("AIFF") : QStringLiteral("WAV"),
                                 values[rows.flacKeepForeignMetadata],
                                 values[rows.flacThroughErrors]};
    plan.jobs.push_back(
        {.sources = {source},
         .outputs = {output},
         .steps = {{QStringLiteral("flac"), flacDecodeArguments(flac, source, output)}}});
}

bool DecodeTab::hasUseFor(const QString& path) const {
    return acceptedExtensions(label()).contains(formatWord(path));
}

Plan DecodeTab::plan(const OptionValues& values, const QString& chosenFolder) const {
    Plan plan;
    for (const QString& source : fileNames()) {
        if (whyNotOpened(source)) {
            plan.leaveOut(source, LeftOut::Why::NoFile);
        } else if (formatWord(source) == u"FLAC") {
            planFlac(source, outputFolder(source, chosenFolder, values), values, plan);
        } else {
            plan.leaveOut(source,
                          hasUseFor(source) ? LeftOut::Why::NotYet : LeftOut::Why::OfNoKind);
        }
    }
    leaveOutUnwritable(plan);
    return plan;
}

std::shared_ptr<ConversionTask>
DecodeTab::makeConversion(const Job& job, const std::shared_ptr<QUAVTaskResults>& /*batch*/) const {
    const ToolCall& call = job.steps.front();
    return std::make_shared<DecodeFlacTask>(job.source(), services(),
                                            services().tools.tool(call.tool), call.arguments);
}

} // namespace quav
