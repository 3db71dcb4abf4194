#pragma once

#include "support/AudioFixtures.h"
#include "tags/TagLibTagsHelper.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <stdexcept>

namespace quav::test {

inline TagsObject readTags(const QString& path) {
    const TagLibTagsHelper helper;
    return path.endsWith(u".wav"_s)    ? helper.tagsForWAVEFile(path)
           : path.endsWith(u".aiff"_s) ? helper.tagsForAIFFFile(path)
                                       : helper.tagsForFlacFile(path);
}

inline TagResult writeTags(const QString& path, const TagsObject& tags) {
    TagLibTagsHelper helper;
    return path.endsWith(u".wav"_s)    ? helper.writeTagsForWAVEFile(path, tags)
           : path.endsWith(u".aiff"_s) ? helper.writeTagsForAIFFFile(path, tags)
                                       : helper.writeTagsForFLACFile(path, tags, false);
}

/// Runs a command line (its words, then paths and other arguments that may hold blanks).
inline QByteArray run(const char* command, const QStringList& rest) {
    const QStringList words = QString::fromLatin1(command).split(u' ');
    QProcess process;
    process.start(words.first(), words.mid(1) + rest);
    const bool ended = process.waitForFinished(quav::test::patience) &&
                       process.exitStatus() == QProcess::NormalExit;
    if (!ended || process.exitCode() != 0) {
        throw std::runtime_error(process.readAllStandardError().prepend(command).toStdString());
    }
    return process.readAllStandardOutput() + process.readAllStandardError();
}

inline bool putBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline TagsObject fullRecord() {
    TagsObject tags;
    int number = 0;
    for (const auto field : TagsObject::textFields()) {
        tags.*field = u"%1 Größe \"日本\" 🎵"_s.arg(++number);
    }
    tags.yearText = u"2001"_s;
    tags.monthText = u"05"_s;
    tags.dayText = u"07"_s;
    tags.trackText = u"3"_s;
    tags.trackTotalText = u"12"_s;
    tags.discText = u"1"_s;
    tags.discTotalText = u"2"_s;
    tags.albumArt = QImage(31, 17, QImage::Format_RGB32);
    tags.albumArt.fill(Qt::red);
    return tags;
}

/// A folder of short sound files whose names are none of the easy ones.
class TagsFolder {
public:
    TagsFolder() { TagLibTagsHelper::initialise(); }
    bool isValid() const { return dir_.isValid(); }

    QString path(const char* extension) {
        return dir_.filePath(u"%1 Größe [live] \"x\" 'y' 100%.%2"_s.arg(
            QString::number(++count_), QString::fromLatin1(extension)));
    }

    /// A short file made by ffmpeg, without any tag but those in `metadata`.
    QString audioFile(const char* extension, const char* metadata = "-bitexact") {
        const auto file = path(extension);
        const auto command = QByteArray("ffmpeg -v error -f lavfi -i sine=duration=0.1 -bitexact ");
        run((command + metadata).constData(), {file});
        return file;
    }

    QString flacFile(std::initializer_list<const char*> metaflacOptions) {
        const auto file = audioFile("flac");
        run("metaflac --remove-all-tags", {file});
        for (const QByteArray option : metaflacOptions) {
            run(("metaflac " + option).constData(), {file});
        }
        return file;
    }

private:
    QTemporaryDir dir_;
    int count_ = 0;
};

} // namespace quav::test
