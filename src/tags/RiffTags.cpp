#include "tags/RiffTags.h"

#include "tags/Id3v2Tags.h"
#include "tags/TagError.h"
#include "tags/TagFiles.h"

#include <QFile>

#include <taglib/aifffile.h>
#include <taglib/wavfile.h>

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
bool writeTags(const QString& path, const TagsObject& tags) {
    RiffFile file(QFile::encodeName(path).constData());
    if (!holdsAudio(file)) {
        throw TagError::cannotOpenForTagging();
    }
    auto& tag = *id3v2Tag(file);
    writeId3v2Tags(tag, tags);
    writeId3v2YearAndDate(tag, tags);
    return save(file);
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
