#include "codecs/DecoderTask.h"

#include "app/Formats.h"
#include "tags/TagLibTagsHelper.h"

#include <utility>

namespace quav {

namespace {

bool isAiff(const QString& output) {
    const AudioFormat* format = formatOf(output);
    return format && *format == formats::aiff;
}

} // namespace

DecoderTask::DecoderTask(const Job& job, const Services& services, Words words)
    : BackgroundConversion(job, services), words_(std::move(words)) {}

QString DecoderTask::outputOfDecoder(const QString& output) {
    return isAiff(output) ? passedOn(output) : output;
}

std::vector<ToolCall> DecoderTask::stepsTo(const QString& output, const ToolCall& decoder) {
    std::vector<ToolCall> steps{decoder};
    if (isAiff(output)) {
        steps.push_back({QString(), {outputOfDecoder(output), output}});
    }
    return steps;
}

std::optional<DecoderTask::Tags> DecoderTask::readTags(const TagLibTagsHelper& /*reader*/) const {
    return std::nullopt;
}

BackgroundConversion::Words DecoderTask::wordsOf(const ToolCall& step) const {
    if (step.tool.isEmpty()) {
        return {{}, words_.progress, nullptr}; // the last moment of what is one to the user
    }
    return words_;
}

TagResult DecoderTask::copyTags() {
    TagLibTagsHelper helper;
    const auto read = readTags(helper);
    if (!read) {
        return {};
    }
    showStatus(read->status);
    TagResult written = isAiff(outFile()) ? helper.writeTagsForAIFFFile(outFile(), read->tags)
                                          : helper.writeTagsForWAVEFile(outFile(), read->tags);
    noteProblems(helper.problems());
    return written;
}

} // namespace quav
