#pragma once

#include "audio/ape/FrameFormat.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace quav::ape {

/// The samples of a frame, as they stand in a WAV file.
struct DecodedFrame {
    std::vector<std::uint8_t> bytes; ///< at least `size`, unless the frame is silent
    std::size_t size = 0;
    bool silent = false; ///< all of the `size` bytes are silentByte()
};

/// Decodes frames of the Monkey's Audio 3.99 stream, each on its own.
class FrameDecoder {
public:
    /// Bytes that must be readable behind those of a frame; their values do not matter.
    static constexpr std::size_t padding = 8;

    explicit FrameDecoder(const FrameFormat& format, Advance advance = {})
        : format_(format), advance_(std::move(advance)) {}

    /// Decodes a frame of so many blocks, its bytes in logical order. False when it is damaged: its
    /// checksum says so, or it is too short. Memory is taken in proportion to the frame's bytes.
    bool decode(std::span<const std::uint8_t> frame, std::uint32_t blocks, DecodedFrame& to) const;

private:
    struct Outcome {
        bool complete = false; // the frame did not end too early
        bool alike = true;     // all readers would get the same samples
    };
    template <typename Stage>
    Outcome decodeSamples(std::span<const std::uint8_t> coded, bool wide,
                          std::span<std::uint8_t> to) const;

    FrameFormat format_;
    Advance advance_;
};

} // namespace quav::ape
