#include "tags/RiffTags.h"

#include "tags/Id3v2Tags.h"
#include "tags/TagError.h"
#include "tags/TagFiles.h"
#include "tags/WrittenTags.h"

#include <QFile>

#include <taglib/aifffile.h>
#include <taglib/wavfile.h>

#include <type_traits>

namespace quav {
namespace {

namespace RIFF = TagLib::RIFF;

TagLib::ID3v2::Tag* id3v2Tag(RIFF::AIFF::File& file) {
    return file.tag();
}

TagLib::ID3v2::Tag* id3v2Tag(RIFF::WAV::File& file) {
    return file.ID3v2Tag();
}

// In ID3v2.3 the date frames that we write would change their meaning on the way.
bool save(RIFF::AIFF::File& file) {
    return file.save(TagLib::ID3v2::v4);
}

// A plain save would also write or drop the INFO list, which is not ours.
bool save(RIFF::WAV::File& file) {
    return file.save(RIFF::WAV::File::ID3v2, TagLib::File::StripNone, TagLib::ID3v2::v4);
}

template <class RiffFile>
void readTags(const QString& path, TagsObject& tags) {
    RiffFile file(QFile::encodeName(path).constData(), false);
    if (file.isValid()) {
        readId3v2Tags(*id3v2Tag(file), tags);
    }
}

template <class RiffFile>
constexpr bool isBigEndian = std::is_same_v<RiffFile, RIFF::AIFF::File>;

/// `behindBefore` is what followed the container before saving; TagLib may keep or drop it.
template <class RiffFile>
bool arrivedWhole(const QString& path, qint64 behindBefore) {
    RiffFile file(QFile::encodeName(path).constData(), false);
    if (!file.isValid() || id3v2Tag(file)->isEmpty()) {
        return false;
    }
    const qint64 behind = bytesBehindRiff(file, isBigEndian<RiffFile>);
    return behind == 0 || (behind > 0 && behind == behindBefore);
}

template <class RiffFile>
bool writeTags(const QString& path, const TagsObject& tags) {
    qint64 behindBefore = 0;
    {
        RiffFile file(QFile::encodeName(path).constData());
        if (!holdsAudio(file)) {
            throw TagError::cannotOpenForTagging();
        }
        behindBefore = bytesBehindRiff(file, isBigEndian<RiffFile>);
        auto& tag = *id3v2Tag(file);
        writeId3v2Tags(tag, tags);
        writeId3v2YearAndDate(tag, tags);
        if (!save(file)) {
            return false;
        }
        if (tag.isEmpty()) {
            return true; // nothing was written
        }
    }
    return arrivedWhole<RiffFile>(path, behindBefore);
}

} // namespace

void readAiffTags(const QString& path, TagsObject& tags) {
    readTags<RIFF::AIFF::File>(path, tags);
}

void readWaveTags(const QString& path, TagsObject& tags) {
    readTags<RIFF::WAV::File>(path, tags);
}

bool writeAiffTags(const QString& path, const TagsObject& tags) {
    return writeTags<RIFF::AIFF::File>(path, tags);
}

bool writeWaveTags(const QString& path, const TagsObject& tags) {
    return writeTags<RIFF::WAV::File>(path, tags);
}

} // namespace quav
