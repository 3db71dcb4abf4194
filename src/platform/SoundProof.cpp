#include "platform/SoundProof.h"

#include "audio/file/AudioFile.h"
#include "audio/file/Completeness.h"
#include "audio/pcm/Digest.h"
#include "audio/pcm/Failure.h"
#include "platform/RegularFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QtEndian>

#include <tl/expected.hpp>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace quav::sound {

namespace {

using Answer = Comparison::Answer;

constexpr std::size_t pieceSize = std::size_t{256} << 10;

struct Words {
    Q_DECLARE_TR_FUNCTIONS(SoundProof)
};

std::string pathOf(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

/// What the audio library throws, as a value.
struct Trouble {
    QString why; ///< names the file
    bool isDamage = false;
};

template <typename Work>
auto guarded(const QString& path, Work work) -> tl::expected<decltype(work()), Trouble> {
    try {
        return work();
    } catch (const pcm::Failure& failure) {
        const QString said = QString::fromUtf8(failure.what());
        if (said.isEmpty()) {
            return tl::make_unexpected(
                Trouble{Words::tr("“%1” is of no kind that can be read here.").arg(path), false});
        }
        return tl::make_unexpected(Trouble{said, failure.kind() == pcm::Failure::Kind::Input});
    } catch (const std::exception& error) {
        return tl::make_unexpected(Trouble{QString::fromUtf8(error.what()), false});
    }
}

Comparison troubled(const Trouble& trouble) {
    return {trouble.isDamage ? Answer::Damaged : Answer::Unreadable, trouble.why, {}};
}

tl::expected<audio::AudioFile, Trouble> open(const QString& path, bool learnsLength) {
    return guarded(path, [&] {
        audio::OpenSettings settings;
        settings.learnsLength = learnsLength;
        return audio::AudioFile::open(pathOf(path), settings);
    });
}

/// Whether a WAV or AIFF file is shorter than it says: of what stands behind its sound, that is.
bool isCutShort(const QString& path) {
    static constexpr std::uint64_t header = 8;
    const auto file = RegularFile::open(path);
    const auto start =
        file.and_then([](const RegularFile& open) { return open.readAt(0, header); });
    if (!start || static_cast<std::uint64_t>(start->size()) < header) {
        return false;
    }
    const char* const size = start->constData() + header / 2;
    const std::uint64_t told = start->startsWith("RIFF")   ? qFromLittleEndian<std::uint32_t>(size)
                               : start->startsWith("FORM") ? qFromBigEndian<std::uint32_t>(size)
                                                           : 0;
    return told != UINT32_MAX && told > 0 && told + header > file->size();
}

/// What two numbers say when they differ, else nothing.
QString unlike(const QString& text, std::uint64_t source, std::uint64_t output) {
    return source == output ? QString() : text.arg(output).arg(source);
}

/// In what two descriptions differ; empty when in nothing.
QString difference(const wav::Wave& source, const wav::Wave& output) {
    const pcm::PcmFormat from = source.format();
    const pcm::PcmFormat to = output.format();
    const std::array differences{
        unlike(Words::tr("its channels are %1 instead of %2"), from.channels, to.channels),
        unlike(Words::tr("its sample rate is %1 Hz instead of %2 Hz"), from.sampleRate,
               to.sampleRate),
        unlike(Words::tr("its samples have %1 bits instead of %2"), from.containerBits(),
               to.containerBits()),
    };
    const auto* const found = std::find_if(differences.begin(), differences.end(),
                                           [](const QString& one) { return !one.isEmpty(); });
    return found == differences.end() ? QString() : *found;
}

std::uint64_t blocksOf(const wav::Wave& wave) {
    return wave.dataSize / wave.format().blockAlign();
}

QString lengthDifference(const wav::Wave& source, const wav::Wave& output) {
    return unlike(Words::tr("it is %1 samples long instead of %2"), blocksOf(source),
                  blocksOf(output));
}

/// One of the two files on its way through its reader.
class Stream {
public:
    Stream(const QString& path, const audio::AudioFile& file)
        : path_(path), stored_(file.storedDigest()),
          reader_(file.reader(audio::AudioFile::Check::AllButDigest)), left_(file.wave().dataSize),
          buffer_(pieceSize) {}

    /// The next samples; none at the end, when the reader has checked what it checks last.
    tl::expected<std::span<const std::uint8_t>, Trouble> next() {
        return guarded(path_, [this] {
            const auto wanted =
                static_cast<std::size_t>(std::min<std::uint64_t>(left_, buffer_.size()));
            const std::size_t got = reader_->read(std::span(buffer_).first(wanted));
            if (got < wanted) {
                throw pcm::Failure(pcm::Failure::Kind::Input,
                                   pathOf(path_) + ": ends before its header says it does");
            }
            left_ -= got;
            if (wanted == 0) {
                reader_->finish();
            }
            return std::span<const std::uint8_t>(buffer_).first(got);
        });
    }

    /// What is wrong when these are the samples and the file stores another digest of them.
    std::optional<Trouble> judge(const pcm::Md5Digest& digest) const {
        if (!stored_ || *stored_ == digest) {
            return std::nullopt;
        }
        return Trouble{Words::tr("%1: its samples do not match the MD5 that it stores").arg(path_),
                       true};
    }

private:
    const QString& path_;
    std::optional<pcm::Md5Digest> stored_; ///< made here anyhow, so that no reader has to
    std::unique_ptr<pcm::Reader> reader_;
    std::uint64_t left_;
    std::vector<std::uint8_t> buffer_;
};

Comparison compareSamples(Stream source, Stream output, const std::function<bool()>& stop) {
    pcm::Md5 digest;
    while (!stop()) {
        const auto from = source.next();
        if (!from) {
            return troubled(from.error());
        }
        const auto to = output.next();
        if (!to) {
            return {Answer::Torn, to.error().why, {}};
        }
        if (!std::equal(from->begin(), from->end(), to->begin(), to->end())) {
            return {Answer::Different, Words::tr("its samples are others"), {}};
        }
        if (from->empty()) {
            const pcm::Md5Digest result = digest.result();
            if (const auto wrong = source.judge(result)) {
                return troubled(*wrong);
            }
            if (const auto wrong = output.judge(result)) {
                return {Answer::Torn, wrong->why, {}};
            }
            return {Answer::Equal,
                    {},
                    QByteArray(reinterpret_cast<const char*>(result.data()), result.size())};
        }
        digest.add(*from);
    }
    return {Answer::Stopped, {}, {}};
}

} // namespace

Comparison compare(const QString& source, const QString& output,
                   const std::function<bool()>& stop) {
    const auto from = open(source, true);
    if (!from) {
        return troubled(from.error());
    }
    const auto to = open(output, true);
    if (!to) {
        return {Answer::Torn, to.error().why, {}};
    }
    const QString unequal = difference(from->wave(), to->wave());
    if (!unequal.isEmpty()) {
        return {Answer::Different, unequal, {}};
    }
    if (const QString longer = lengthDifference(from->wave(), to->wave()); !longer.isEmpty()) {
        return {Answer::Different, longer, {}};
    }
    const auto streams = guarded(source, [&] {
        return std::pair(std::make_unique<Stream>(source, *from),
                         std::make_unique<Stream>(output, *to));
    });
    if (!streams) {
        return troubled(streams.error());
    }
    Comparison samples =
        compareSamples(std::move(*streams->first), std::move(*streams->second), stop);
    if (samples.answer == Answer::Equal && isCutShort(output)) {
        return {
            Answer::Torn, Words::tr("“%1” ends before its header says it does").arg(output), {}};
    }
    return samples;
}

Comparison compareHeaders(const QString& source, const QString& output) {
    const auto from = open(source, false);
    const auto to = open(output, false);
    if (!from || !to) {
        return {};
    }
    QString unequal = difference(from->wave(), to->wave());
    wav::Wave there = from->wave();
    there.dataSize -=
        std::min(there.dataSize, from->missingBytes()); // of a file that was cut short
    const bool bothTell = there.dataSize > 0 && to->wave().dataSize > 0;
    if (unequal.isEmpty() && bothTell) {
        unequal = lengthDifference(there, to->wave());
    }
    return {unequal.isEmpty() ? Answer::Equal : Answer::Different, unequal, {}};
}

QString leftOut(const QString& path) {
    const auto found = guarded(path, [&] { return audio::soundLeftOut(pathOf(path)); });
    return found && *found ? QString::fromStdString(**found) : QString();
}

} // namespace quav::sound
