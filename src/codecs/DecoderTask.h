#pragma once

#include "codecs/BackgroundConversion.h"
#include "tags/TagsObject.h"

#include <optional>
#include <vector>

namespace quav {

class TagLibTagsHelper;

/// Decodes one file with a tool that writes WAV files; AIFF files are made of a temporary one.
class DecoderTask : public BackgroundConversion {
public:
    /// The file that the decoder is to write, so that `output` comes of it.
    static QString outputOfDecoder(const QString& output);

    /// All steps, given the decoder's own.
    static std::vector<ToolCall> stepsTo(const QString& output, const ToolCall& decoder);

protected:
    /// The decoder's words, with a place for the percentage.
    DecoderTask(const Job& job, const Services& services, Words words);

    /// The tags of the source, and what is shown while they are written; none where nobody reads
    /// them.
    struct Tags {
        TagsObject tags;
        QString status;
    };
    virtual std::optional<Tags> readTags(const TagLibTagsHelper& reader) const;

    Words wordsOf(const ToolCall& step) const override;
    TagResult copyTags() override;

private:
    Words words_;
};

} // namespace quav
