#include "platform/AudioConverter.h"

#include "audio/file/AudioFile.h"
#include "audio/pcm/AiffSink.h"
#include "audio/pcm/Failure.h"
#include "audio/pcm/OutputFile.h"
#include "audio/pcm/WavHeader.h"

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace quav {

namespace {

constexpr std::size_t pieceSize = std::size_t{256} << 10;

std::string pathOf(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

/// The samples of a file from front to back; false when they were not wanted any more.
bool passOn(const audio::AudioFile& file, pcm::ByteSink& to, const ConversionProgress& progress) {
    const auto reader = file.reader();
    const std::uint64_t whole = file.wave().dataSize;
    std::vector<std::uint8_t> piece(pieceSize);
    for (std::uint64_t left = whole; left > 0;) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(left, piece.size()));
        const std::size_t got = reader->read(std::span(piece).first(wanted));
        if (got < wanted) {
            throw pcm::Failure(pcm::Failure::Kind::Input,
                               file.path() + ": ends before its header says it does");
        }
        to.write(std::span(piece).first(got));
        left -= got;
        if (!progress(static_cast<double>(whole - left) / static_cast<double>(whole))) {
            return false;
        }
    }
    reader->finish();
    return true;
}

bool writeWav(const audio::AudioFile& file, pcm::OutputFile& output,
              const ConversionProgress& progress) {
    const std::uint64_t bytes = file.wave().dataSize;
    output.write(pcm::wavHeaderOfBytes(file.wave().format(), bytes));
    if (!passOn(file, output, progress)) {
        return false;
    }
    if (bytes % 2 == 1) {
        constexpr std::uint8_t zero = 0;
        output.write({&zero, 1});
    }
    return true;
}

bool writeAiff(const audio::AudioFile& file, pcm::OutputFile& output,
               const ConversionProgress& progress) {
    pcm::AiffSink aiff(output, file.wave().format(), file.wave().dataSize, output.name());
    if (!passOn(file, aiff, progress)) {
        return false;
    }
    aiff.finish();
    return true;
}

} // namespace

tl::expected<void, QString> convertSound(const QString& source, const QString& output,
                                         PlainFormat format, const ConversionProgress& progress) {
    try {
        const auto file = audio::AudioFile::open(pathOf(source));
        pcm::OutputFile written(pathOf(output));
        const auto write = format == PlainFormat::Aiff ? writeAiff : writeWav;
        if (!write(file, written, progress)) {
            return tl::make_unexpected(QString());
        }
        written.commit();
        return {};
    } catch (const std::exception& error) {
        const QString said = QString::fromUtf8(error.what());
        return tl::make_unexpected(
            said.isEmpty() ? QCoreApplication::translate(
                                 "AudioConverter", "“%1” is of no kind that can be read here.")
                                 .arg(source)
                           : said);
    }
}

} // namespace quav
