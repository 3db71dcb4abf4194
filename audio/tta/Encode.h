#pragma once

#include "audio/pcm/InputFile.h"
#include "audio/pcm/OutputFile.h"
#include "audio/pcm/PcmReader.h"
#include "audio/pcm/Progress.h"
#include "audio/tta/Stream.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace quav::tta {

/// The header of the stream that so many blocks of samples become. Throws pcm::Failure with
/// Kind::Unsupported when TTA cannot hold them; `name` is how the message calls the input.
Header headerFor(const pcm::PcmFormat& format, std::uint64_t blocks, const std::string& name);

/// Codes the samples with up to `jobs` threads and writes a TTA1 stream without tags. Memory does
/// not grow with its length: where the output can only be written in order, the frames wait in a
/// temporary file, for the seek table with their sizes comes before them.
void encode(pcm::PcmReader& reader, const Header& header, std::size_t jobs, pcm::OutputFile& output,
            pcm::Progress& progress);

} // namespace quav::tta
