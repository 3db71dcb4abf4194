#include "codecs/DecodeWavpackTask.h"

#include "codecs/WavpackTool.h"
#include "platform/RegularFile.h"
#include "tags/TagLibTagsHelper.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace quav {

DecodeWavpackTask::DecodeWavpackTask(const Job& job, const Services& services)
    : DecoderTask(job, services,
                  {QCoreApplication::translate("DecodeWavpackTask", "Decoding From Wavpack"),
                   QCoreApplication::translate("DecodeWavpackTask", "Deoding From Wavpack: %1%"),
                   wavpack::read}) {}

/// The tool restores whatever file the WavPack file was made from: AIFF, CAF or Wave64, too.
std::vector<ToolCall> DecodeWavpackTask::repairs(const ToolCall& step) const {
    constexpr std::uint64_t enoughToSee = 4;
    const auto beginning = RegularFile::beginningOf(step.arguments.last(), enoughToSee);
    if (!beginning || beginning->startsWith("RIFF") || beginning->startsWith("RF64")) {
        return {};
    }
    return {{step.tool, QStringList{QStringLiteral("--wav"), QStringLiteral("-y")} + step.arguments,
             step.folder}};
}

std::optional<DecoderTask::Tags> DecodeWavpackTask::readTags(const TagLibTagsHelper& reader) const {
    TagsObject tags = reader.tagsForWavpackFile(fileName());
    const auto& fields = TagsObject::textFields();
    // Without tags the file stays, byte for byte, the one that was encoded.
    if (std::all_of(fields.begin(), fields.end(),
                    [&](auto field) { return !(tags.*field) || (tags.*field)->isEmpty(); })) {
        return std::nullopt;
    }
    return Tags{std::move(tags),
                QCoreApplication::translate("DecodeWavpackTask", "Copying Wavpack Tags")};
}

} // namespace quav
