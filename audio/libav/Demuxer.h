#pragma once

#include "audio/libav/LibAv.h"
#include "audio/pcm/InputFile.h"

#include <cstdint>
#include <memory>
#include <span>

namespace quav::libav {

/// An audio file that FFmpeg's libraries have open.
///
/// Throws pcm::Failure: Kind::Input when the file is damaged, Kind::Read when the libraries are not
/// there.
class Demuxer {
public:
    /// Whether an MPEG-4 file's edit list is followed, which lets parts of it be heard only.
    enum class Edits { Follow, Ignore };

    /// `input` is a regular file and must outlive the object; what stands before `start` does not
    /// exist for FFmpeg. `format` is FFmpeg's name of a demuxer.
    Demuxer(const pcm::InputFile& input, std::uint64_t start, const char* format,
            Edits edits = Edits::Follow);
    ~Demuxer();
    Demuxer(const Demuxer&) = delete;
    Demuxer& operator=(const Demuxer&) = delete;

    /// What the file holds, as far as its header tells.
    std::span<AVStream* const> streams() const;

    /// A decoder for a stream, which takes no frame with a wrong checksum. Its samples come in the
    /// `wanted` format if it can make that.
    CodecContext openDecoder(const AVStream& stream,
                             AVSampleFormat wanted = AV_SAMPLE_FMT_NONE) const;

    /// Reads the next packet of any stream; false at the end or where the file is damaged.
    bool read(AVPacket& packet);

private:
    class Source;
    [[noreturn]] void refuse() const;

    const pcm::InputFile& input_;
    std::unique_ptr<Source> source_;
    IoContext io_;
    FormatContext context_;
};

} // namespace quav::libav
