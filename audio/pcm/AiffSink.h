#pragma once

#include "audio/pcm/ByteSink.h"
#include "audio/pcm/PcmFormat.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace quav::pcm {

/// Turns the samples of a WAV file into an AIFF file ("Audio Interchange File Format AIFF-C", Apple
/// 1991): writes the header at once, the samples as they come, and what evens out their bytes at
/// the end.
class AiffSink final : public ByteSink {
public:
    /// `dataBytes` is how many bytes of samples of the format `from` are to come; an incomplete
    /// block at their end is left out. Throws Failure with Kind::Unsupported for more than AIFF can
    /// hold; `name` is how messages call the file.
    AiffSink(ByteSink& to, const PcmFormat& from, std::uint64_t dataBytes, const std::string& name);

    /// Samples as a WAV file has them, cut anywhere. What goes beyond them is passed over.
    void write(std::span<const std::uint8_t> bytes) override;

    /// To be called once, behind the last sample.
    void finish();

private:
    ByteSink& file_;
    PcmFormat from_;
    PcmFormat to_;
    std::uint64_t left_; // bytes of samples to come
    bool pads_;
    std::vector<std::uint8_t> waiting_; // an incomplete block
    std::vector<std::int32_t> samples_;
    std::vector<std::uint8_t> turned_;
};

} // namespace quav::pcm
