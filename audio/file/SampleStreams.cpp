#include "audio/file/SampleStreams.h"

#include "audio/pcm/Failure.h"
#include "audio/pcm/PcmReader.h"
#include "audio/pcm/Samples.h"

#include <algorithm>
#include <vector>

namespace quav::audio {

using pcm::Failure;
using pcm::InputFile;

namespace {

constexpr std::size_t pieceSize = std::size_t{64} << 10;

} // namespace

FileReader::FileReader(const std::string& path, std::uint64_t start)
    : file_(InputFile::open(path)) {
    file_.seek(start);
}

std::size_t FileReader::read(std::span<std::uint8_t> to) {
    return file_.read(to);
}

wav::WaveHeader headerFrom(pcm::Reader& reader, const std::string& path,
                           const wav::ChunkHandler& found) {
    return wav::readWaveHeader([&](std::span<std::uint8_t> to) { return reader.read(to); }, path,
                               found);
}

ExactSink::ExactSink(const std::string& path, std::uint64_t size, pcm::ByteSink& to)
    : path_(path), left_(size), isOdd_(size % 2 == 1), to_(to) {}

void ExactSink::write(std::span<const std::uint8_t> bytes) {
    if (bytes.size() > left_) {
        throw Failure(Failure::Kind::Input, path_ + ": holds more samples than it tells");
    }
    left_ -= bytes.size();
    to_.write(bytes);
}

void ExactSink::finish() {
    if (left_ > 0) {
        throw Failure(Failure::Kind::Input, path_ + ": holds fewer samples than it tells");
    }
    if (isOdd_) {
        constexpr std::uint8_t zero = 0;
        to_.write({&zero, 1});
    }
}

void writeAiff(const std::string& path, const pcm::PcmFormat& as, pcm::ByteSink& to) {
    InputFile file = InputFile::open(path);
    pcm::PcmReader reader(file);
    std::vector<std::uint8_t> bytes(std::max<std::size_t>(1, pieceSize / as.blockAlign()) *
                                    as.blockAlign());
    std::vector<std::int32_t> samples;
    while (const std::size_t count = reader.readSamples(bytes)) {
        const std::span piece(bytes.data(), count);
        samples.resize(count / as.bytesPerSample);
        pcm::unpackSamples(reader.format(), piece, samples);
        pcm::packSamples(as, samples, piece);
        to.write(piece);
    }
}

void copyAll(pcm::Reader& from, pcm::ByteSink& to) {
    std::vector<std::uint8_t> piece(pieceSize);
    while (const std::size_t count = from.read(piece)) {
        to.write(std::span(piece).first(count));
    }
}

} // namespace quav::audio
