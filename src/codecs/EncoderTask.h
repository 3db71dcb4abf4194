#pragma once

#include "codecs/BackgroundConversion.h"
#include "tags/TagsObject.h"

#include <memory>
#include <optional>
#include <vector>

namespace quav {

class TagLibTagsHelper;

/// Encodes one file with a tool that reads WAV files; other sources go through a temporary one. The
/// report is shared with the other files of the batch.
class EncoderTask : public BackgroundConversion {
public:
    /// The steps that bring a source to the encoder, and the file that it then reads. No step and
    /// the source itself where the encoder can read it; nothing for sources of other kinds.
    struct Input {
        std::vector<ToolCall> steps;
        QString path;
    };
    static std::optional<Input> inputFor(const QString& source, const QString& output);

protected:
    /// What is shown of the encoder: its name in the tools folder, its status when it begins, and
    /// its words, with a place for the percentage.
    struct Encoder {
        QString tool;
        Words words;
    };
    EncoderTask(const Job& job, const Services& services, std::shared_ptr<QUAVTaskResults> results,
                Encoder encoder);

    /// Writes tags into the output.
    virtual TagResult writeTags(TagLibTagsHelper& writer, const TagsObject& tags) = 0;

    void aboutToBegin() override;
    Words wordsOf(const ToolCall& step) const override;
    TagResult copyTags() override;

private:
    Encoder encoder_;
};

} // namespace quav
