#pragma once

#include "audio/pcm/ByteSink.h"
#include "shntool/Audio.h"
#include "shntool/Formats.h"

#include <memory>
#include <optional>
#include <string>

namespace quav::shntool {

enum class Overwrite { Ask, Always, Never };

/// A file that is being written: what follows a WAV header, the samples first, then what stands
/// behind them. It gets its name when commit() is called, and none before.
///
/// Throws pcm::Failure with Kind::Write, and pcm::ReaderGone when an encoder does not read on.
class Writer : public pcm::ByteSink {
public:
    virtual void commit() = 0;

    /// After a failure, the process number of an encoder that has ended with this status.
    struct Ended {
        int process = 0;
        int status = 0;
        bool hadAll = false; ///< it failed after it had been given everything
    };
    virtual std::optional<Ended> failedEncoder() { return {}; }
};

/// Begins a file with this header. The caller has made sure that `path` is free or may be replaced.
std::unique_ptr<Writer> openWriter(const OutputFormat& format, const std::string& path,
                                   bool mayReplace, const WaveHeader& header);

} // namespace quav::shntool
