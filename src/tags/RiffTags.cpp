#include "tags/RiffTags.h"

#include "tags/Id3v2Tags.h"
#include "tags/TagError.h"
#include "tags/TagFiles.h"
#include "tags/TagStrings.h"
#include "tags/WrittenTags.h"

#include <QCoreApplication>
#include <QFile>
#include <QMap>

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

/// The first text of every frame that we write. A zero parts the values of a frame once it is read.
QMap<QString, QString> frameTexts(const TagLib::ID3v2::Tag& tag) {
    QMap<QString, QString> texts;
    for (const char* id :
         {"TIT2", "TPE1", "TPE2", "TALB", "TCON", "TCOM", "TRCK", "TPOS", "TYER", "TDAT"}) {
        if (const auto& frames = tag.frameList(id); !frames.isEmpty()) {
            const QString text = fromTagLibString(frames.front()->toString());
            texts.insert(QString::fromLatin1(id), QString(text).replace(QChar(0), u' '));
        }
    }
    return texts;
}

/// `behindBefore` is what followed the container before saving; TagLib may keep or drop it.
template <class RiffFile>
TagResult arrivedWhole(const QString& path, qint64 behindBefore,
                       const QMap<QString, QString>& meant) {
    RiffFile file(QFile::encodeName(path).constData(), false);
    if (!file.isValid() || id3v2Tag(file)->isEmpty()) {
        return notSaved(path, QCoreApplication::translate("TagLibTagsHelper",
                                                          "The tags are not in the saved file."));
    }
    const qint64 behind = bytesBehindRiff(file, isBigEndian<RiffFile>);
    if (behind != 0 && (behind < 0 || behind != behindBefore)) {
        return notSaved(path, QCoreApplication::translate("TagLibTagsHelper",
                                                          "The saved file has another length than "
                                                          "its header says."));
    }
    const auto found = frameTexts(*id3v2Tag(file));
    for (auto field = meant.cbegin(); field != meant.cend(); ++field) {
        if (found.value(field.key()) != field.value()) {
            return notSaved(path, readsBackDifferently(field.key()));
        }
    }
    return {};
}

template <class RiffFile>
TagResult writeTags(const QString& path, const TagsObject& tags) {
    qint64 behindBefore = 0;
    QMap<QString, QString> meant;
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
            return notSaved(path, QCoreApplication::translate("TagLibTagsHelper",
                                                              "The file could not be saved."));
        }
        if (tag.isEmpty()) {
            return {}; // nothing was written
        }
        meant = frameTexts(tag);
    }
    return arrivedWhole<RiffFile>(path, behindBefore, meant);
}

} // namespace

void readAiffTags(const QString& path, TagsObject& tags) {
    readTags<RIFF::AIFF::File>(path, tags);
}

void readWaveTags(const QString& path, TagsObject& tags) {
    readTags<RIFF::WAV::File>(path, tags);
}

TagResult writeAiffTags(const QString& path, const TagsObject& tags) {
    return writeTags<RIFF::AIFF::File>(path, tags);
}

TagResult writeWaveTags(const QString& path, const TagsObject& tags) {
    return writeTags<RIFF::WAV::File>(path, tags);
}

} // namespace quav
