#pragma once

#include <QString>

#include <taglib/flacfile.h>

#include <optional>
#include <vector>

namespace quav {

// TagLib reports a file as saved even when the disk was full and part of it is lost. These tell,
// from the file opened anew after saving, whether everything arrived.

/// What saving tags in a FLAC file changes and what it must leave as it is.
struct FlacContent {
    long audioLength = 0; ///< In bytes, without any tag behind the audio.
    TagLib::ByteVector comment;
    std::vector<TagLib::ByteVector> pictures;

    bool operator==(const FlacContent&) const = default;
};

/// What the file holds on the disk; nothing when its metadata blocks cannot be followed up to the
/// audio.
std::optional<FlacContent> contentOnDisk(TagLib::FLAC::File& file);

/// What saving `file` must lead to: the audio of `before` with the tags as they are in memory.
FlacContent contentToSave(TagLib::FLAC::File& file, const FlacContent& before);

/// What is not as it was meant to be, in a sentence for the user; empty when nothing is.
QString differenceBetween(const FlacContent& meant, const std::optional<FlacContent>& found);

/// The sentence that a field is not in the file as it was written.
QString readsBackDifferently(const QString& field);

/// The bytes of a WAV or AIFF file behind the end that its header states: 0 in a sound file, less
/// when it is cut off.
qint64 bytesBehindRiff(TagLib::File& file, bool bigEndian);

} // namespace quav
