#pragma once

#include "audio/pcm/Digest.h"
#include "audio/pcm/Reader.h"
#include "audio/wav/Wave.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quav::audio {

/// Another program that decodes a file.
struct OtherDecoder {
    std::string name; ///< how messages call it
    /// Starts it once more; the reader begins with the WAV header.
    std::function<std::unique_ptr<pcm::Reader>()> start;
};

/// What opening needs to know beside the file's name.
struct OpenSettings {
    /// What is to decode a file of this format in our place; our own decoder when it gives nothing.
    std::function<std::optional<OtherDecoder>(const std::string& format, const std::string& path)>
        otherDecoder;
    wav::ChunkHandler foundChunk;
    /// Whether a file that does not tell its length is decoded to learn it; its length is 0 else.
    bool learnsLength = true;
};

/// A file of any format that can be read, described by the WAV header it stores or would decode
/// to. Nothing stays open: every reader opens the file anew.
class AudioFile {
public:
    /// Throws pcm::Failure, of Kind::Read when there is no such file or it cannot be opened, else
    /// because no format is known that reads it; the text may be empty then.
    static AudioFile open(const std::string& path, const OpenSettings& settings = {});

    const std::string& path() const { return path_; }
    const wav::WaveHeader& header() const { return header_; }
    const wav::Wave& wave() const { return header_.wave; }
    /// One of wav, aiff, flac, shn, ape, tta, wv and alac.
    const std::string& format() const { return format_; }
    std::uint64_t size() const { return size_; }
    /// Bytes of the ID3v2 tag in front.
    std::uint64_t tagSize() const { return tagSize_; }
    double ratio() const;

    bool isCompressed() const { return format_ != "wav" && format_ != "aiff"; }
    /// Only of a WAV file it can be told whether its length is what it should be.
    bool isWav() const { return format_ == "wav"; }
    /// By how much the file is shorter or longer than its header says; 0 for other formats.
    std::uint64_t missingBytes() const;
    std::uint64_t junkBytes() const;
    /// Bytes that belong to the file behind its samples: their padding and further chunks.
    std::uint64_t behindData() const;
    /// The chunks among them.
    std::uint64_t extraChunks() const;
    /// Of a Shorten file: whether it has a seek table.
    std::optional<bool> hasSeekTable() const { return hasSeekTable_; }

    /// What of the sound in the file its reader passes over (see Completeness.h), if anything.
    const std::optional<std::string>& soundLeftOut() const { return leftOut_; }

    /// The digest of the samples that the file stores and that its reader does not compare, if any.
    const std::optional<pcm::Md5Digest>& storedDigest() const { return storedDigest_; }

    enum class Check {
        Everything,
        AllButDigest ///< the caller compares storedDigest() itself
    };
    std::unique_ptr<pcm::Reader> reader(Check check = Check::Everything) const;

private:
    friend class Opener;
    std::string path_;
    std::string format_;
    wav::WaveHeader header_;
    std::uint64_t size_ = 0;
    std::uint64_t tagSize_ = 0;
    std::optional<bool> hasSeekTable_;
    std::optional<std::string> leftOut_;
    std::optional<pcm::Md5Digest> storedDigest_;
    std::function<std::unique_ptr<pcm::Reader>(Check)> makeReader_;
};

} // namespace quav::audio
