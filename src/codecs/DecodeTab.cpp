#include "codecs/DecodeTab.h"

#include "app/FileKinds.h"
#include "codecs/Codec.h"
#include "codecs/DecodeOptions.h"
#include "platform/PathNames.h"
#include "platform/Settings.h"
#include "platform/SpecialFile.h"

#include <algorithm>
#include <utility>

namespace quav {

DecodeTab::DecodeTab(const Services& services)
    : ConversionTab(tabs::decode, decodeOptions(), services) {}

void DecodeTab::showFLacOptions(bool visible) {
    ListFacts facts = options().facts();
    if (visible) {
        facts.addFormat(formats::flac.name());
    } else {
        facts.removeFormat(formats::flac.name());
    }
    options().setFacts(facts);
}

void DecodeTab::filesAdded() {
    const QStringList names = fileNames();
    const auto isFlac = [](const QString& name) {
        return formatWord(name) == formats::flac.name();
    };
    if (std::any_of(names.begin(), names.end(), isFlac)) {
        showFLacOptions(true);
    }
    ConversionTab::filesAdded();
}

void DecodeTab::clearFiles() {
    showFLacOptions(false);
    ConversionTab::clearFiles();
}

void DecodeTab::planDecoding(const Codec& codec, const QString& source, const QString& folder,
                             const OptionValues& values, Plan& plan) const {
    const bool isAiff = values[decodeOptions().outputFormat] == DecodeTarget::Aiff;
    const AudioFormat& format = isAiff ? formats::aiff : formats::wav;
    const QString output =
        joinPath(folder, baseName(source) + u'.' + QLatin1StringView(format.extension));
    if (output == source || isSameFile(output, source)) {
        plan.leaveOut(output, LeftOut::Why::OwnOutput);
        return;
    }
    Job job{.sources = {source}, .outputs = {output}};
    job.steps = codec.decode(values, job);
    plan.jobs.push_back(std::move(job));
}

bool DecodeTab::hasUseFor(const QString& path) const {
    return acceptedExtensions(label()).contains(formatWord(path));
}

Plan DecodeTab::plan(const OptionValues& values, const QString& chosenFolder) const {
    Plan plan;
    for (const QString& source : fileNames()) {
        if (whyNotOpened(source)) {
            plan.leaveOut(source, LeftOut::Why::NoFile);
        } else if (const Codec* codec = codecOf(source)) {
            planDecoding(*codec, source, outputFolder(source, chosenFolder, values), values, plan);
        } else {
            plan.leaveOut(source,
                          hasUseFor(source) ? LeftOut::Why::NotYet : LeftOut::Why::OfNoKind);
        }
    }
    leaveOutUnwritable(plan);
    return plan;
}

ConvertingTask DecodeTab::makeConversion(const Job& job,
                                         const std::shared_ptr<QUAVTaskResults>& /*batch*/) const {
    return codecOf(job.source())->makeDecoder(job, services());
}

} // namespace quav
