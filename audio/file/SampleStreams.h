#pragma once

#include "audio/pcm/ByteSink.h"
#include "audio/pcm/InputFile.h"
#include "audio/pcm/PcmFormat.h"
#include "audio/pcm/Reader.h"
#include "audio/wav/Wave.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace quav::audio {

/// A WAV file from its first sample on, which stands at the byte `start`.
class FileReader final : public pcm::Reader {
public:
    FileReader(const std::string& path, std::uint64_t start);
    std::size_t read(std::span<std::uint8_t> to) override;

private:
    pcm::InputFile file_;
};

/// Reads the WAV header with which `reader` begins; messages name `path`. Throws pcm::Failure.
wav::WaveHeader headerFrom(pcm::Reader& reader, const std::string& path,
                           const wav::ChunkHandler& found = {});

/// Passes on the samples of a decoder, which must be as many as the file has told, and the byte
/// that evens out an odd number of them. Throws pcm::Failure when they are not.
class ExactSink final : public pcm::ByteSink {
public:
    /// Both `path` and `to` have to outlive it; `size` is in bytes.
    ExactSink(const std::string& path, std::uint64_t size, pcm::ByteSink& to);

    void write(std::span<const std::uint8_t> bytes) override;
    void finish();

private:
    const std::string& path_;
    std::uint64_t left_;
    bool isOdd_;
    pcm::ByteSink& to_;
};

/// Only counts the bytes.
class CountingSink final : public pcm::ByteSink {
public:
    void write(std::span<const std::uint8_t> bytes) override { count_ += bytes.size(); }
    std::uint64_t count() const { return count_; }

private:
    std::uint64_t count_ = 0;
};

/// Writes the samples of an AIFF file as a WAV file has them. Throws pcm::Failure.
void writeAiff(const std::string& path, const pcm::PcmFormat& as, pcm::ByteSink& to);

/// Passes on what is left to read.
void copyAll(pcm::Reader& from, pcm::ByteSink& to);

} // namespace quav::audio
