#pragma once

#include "audio/pcm/ByteSink.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

namespace quav::pcm {

/// Reads what follows the header of a WAV file, or would follow it: samples first, then their
/// padding and further chunks.
///
/// Throws Failure when the file is damaged or cannot be read.
class Reader {
public:
    Reader() = default;
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    virtual ~Reader() = default;

    /// Fills `to`; returns fewer bytes only at the end.
    virtual std::size_t read(std::span<std::uint8_t> to) = 0;

    /// To be called behind the last read that counts: a decoder finds some damage at the end only.
    /// Throws DigestMismatch when that is all that is wrong.
    virtual void finish() {}
};

/// Writes all that is to be read, from front to back.
using Decode = std::function<void(ByteSink& to)>;

/// A reader for a decoder that pushes: it works in a thread of its own, some pieces ahead of the
/// reader. `decode` must own or outlive what it uses.
std::unique_ptr<Reader> readerOf(Decode decode);

} // namespace quav::pcm
