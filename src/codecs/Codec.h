#pragma once

#include "app/Formats.h"
#include "app/OptionValues.h"
#include "app/Plan.h"
#include "app/Services.h"
#include "codecs/DecodeOptions.h"
#include "codecs/EncodeOptions.h"

#include <QString>

#include <memory>
#include <span>
#include <vector>

namespace quav {

class FileConversion;
class QUAVTask;
class QUAVTaskResults;

/// A task that converts a file, and what makes it safe, which is a part of it.
struct ConvertingTask {
    std::shared_ptr<QUAVTask> task;
    FileConversion* conversion = nullptr;

    template <typename Task>
    static ConvertingTask of(const std::shared_ptr<Task>& task) {
        return {task, &task->conversion()};
    }
};

/// What may stand in an encoder's way.
enum class ExistingOutputs : unsigned char {
    Asked,  ///< the user is asked whether all of them may be replaced
    Refused ///< the tool refuses; a source among them stops everything before it starts
};

/// A format that files are encoded to and decoded from: the commands, and the tasks that run them.
/// The tabs plan and work by these rows alone.
struct Codec {
    const AudioFormat& format;
    EncodeTarget target;
    ExistingOutputs existingOutputs;
    /// Whether a source can be encoded; others stay in the list, where the user is told.
    bool (*takes)(const QString& source);
    std::vector<ToolCall> (*encode)(const OptionValues& values, const Job& job);
    ConvertingTask (*makeEncoder)(const Job& job, const Services& services,
                                  const std::shared_ptr<QUAVTaskResults>& batch);
    std::vector<ToolCall> (*decode)(const OptionValues& values, const Job& job);
    ConvertingTask (*makeDecoder)(const Job& job, const Services& services);
};

std::span<const Codec> codecs();

const Codec& codecOf(EncodeTarget target);

/// The codec that made a file; nullptr for a kind that cannot be decoded here.
const Codec* codecOf(const QString& path);

} // namespace quav
