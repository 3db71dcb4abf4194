#include "platform/FlacFile.h"

#include "audio/flac/LastFrame.h"
#include "audio/pcm/Failure.h"

#include <QCoreApplication>
#include <QFile>

namespace quav {

namespace {

/// What a reader makes of an opened file; nothing when it cannot be read.
template <typename Read>
auto readFlac(const QString& path, Read read) -> decltype(read(pcm::InputFile::open({}))) {
    try {
        return read(pcm::InputFile::open(QFile::encodeName(path).toStdString()));
    } catch (const pcm::Failure&) {
        return std::nullopt;
    }
}

} // namespace

QString FlacCount::difference() const {
    return QCoreApplication::translate("FlacCount",
                                       "its beginning tells of %L1 samples, and it has %L2")
        .arg(told)
        .arg(held);
}

std::optional<FlacCount> flacCount(const QString& path) {
    return readFlac(path, [](const pcm::InputFile& file) -> std::optional<FlacCount> {
        const auto frames = flac::findFrames(file);
        const auto held = frames ? flac::samplesAtEnd(file, *frames) : std::nullopt;
        return held ? std::optional(FlacCount{frames->info.total, *held}) : std::nullopt;
    });
}

std::optional<QByteArray> flacDigest(const QString& path) {
    return readFlac(path, [](const pcm::InputFile& file) -> std::optional<QByteArray> {
        const auto info = flac::readStreamInfo(file);
        return info ? std::optional(QByteArray(reinterpret_cast<const char*>(info->digest.data()),
                                               info->digest.size()))
                    : std::nullopt;
    });
}

} // namespace quav
