#include "audio/pcm/Digest.h"
#include "audio/pcm/Failure.h"
#include "shntool/Modes.h"
#include "shntool/Work.h"

#include <array>
#include <optional>

namespace quav::shntool {

namespace {

std::string hexadecimal(std::span<const std::uint8_t> digest) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

// A digest of either kind of what is written.
class DigestSink final : public pcm::ByteSink {
public:
    explicit DigestSink(bool isSha1) : isSha1_(isSha1) {}

    void write(std::span<const std::uint8_t> bytes) override {
        if (isSha1_) {
            sha1_.add(bytes);
        } else {
            md5_.add(bytes);
        }
    }
    // To be called once, at the end.
    std::string text() {
        if (isSha1_) {
            return hexadecimal(sha1_.result());
        }
        md5Digest_ = md5_.result();
        return hexadecimal(*md5Digest_);
    }
    // Whether a file that stores its own digest has told it right, as far as that is known.
    bool matches(const AudioFile& file) const {
        return !md5Digest_ || !file.storedDigest() || *md5Digest_ == *file.storedDigest();
    }

private:
    bool isSha1_;
    pcm::Md5 md5_;
    pcm::Sha1 sha1_;
    std::optional<pcm::Md5Digest> md5Digest_;
};

std::string line(const std::string& digest, const std::string& name) {
    return digest + "  [shntool]  " + Console::name(name);
}

std::string damaged(const AudioFile& file) {
    return "possibly truncated and/or corrupt file: [" + file.path() + "]";
}

std::string unlikeStored(const AudioFile& file) {
    return "the MD5 that the file stores is not that of its samples: [" + file.path() + "]";
}

// Whether the digest that the file stores is that of the samples; looked at behind the last of
// them.
bool endsWithItsDigest(Reader& reader) {
    try {
        reader.finish();
        return true;
    } catch (const pcm::DigestMismatch&) {
        return false;
    }
}

void hashFile(Work& work, const AudioFile& file, bool isSha1) {
    Meter meter(work.console(), "Hashing " + work.label(file), file.wave().dataSize);
    DigestSink digest(isSha1);
    bool isAsStored = false;
    const bool isDone = work.transfer(nullptr, damaged(file), [&] {
        // An MD5 that is made anyhow need not be made twice.
        const auto reader =
            file.reader(isSha1 ? AudioFile::Check::Everything : AudioFile::Check::AllButDigest);
        copyBytes(*reader, digest, file.wave().dataSize, &meter);
        isAsStored = endsWithItsDigest(*reader);
    });
    if (!isDone) {
        return;
    }
    const std::string text = digest.text();
    meter.done();
    if (!isAsStored || !digest.matches(file)) {
        work.console().warn(unlikeStored(file)); // the digest of what sounds is right all the same
    }
    work.console().result(line(text, file.path()));
}

int hashComposite(Work& work, bool isSha1) {
    std::vector<AudioFile> files;
    std::uint64_t size = 0;
    for (const std::string& path : work.options().files) {
        if (auto file = work.open(path)) {
            size += file->wave().dataSize;
            files.push_back(*std::move(file));
        }
    }
    if (work.status() != 0) {
        throw ModeError("all files must be valid to generate a composite fingerprint");
    }
    if (files.empty()) {
        throw ModeError("need at least one valid file to process");
    }
    Meter meter(work.console(), "Hashing [composite]", size);
    DigestSink digest(isSha1);
    std::vector<std::string> warnings;
    for (const AudioFile& file : files) {
        try {
            const auto reader = file.reader();
            copyBytes(*reader, digest, file.wave().dataSize, &meter);
            if (!endsWithItsDigest(*reader)) {
                warnings.push_back(unlikeStored(file));
            }
        } catch (const pcm::Failure& failure) {
            throw ModeError(*failure.what() != '\0' ? failure.what() : damaged(file));
        }
    }
    meter.done();
    for (const std::string& warning : warnings) {
        work.console().warn(warning);
    }
    work.console().result(line(digest.text(), "composite"));
    return 0;
}

} // namespace

int runHash(const Options& options, Console& console) {
    const bool isSha1 = options.lastOf("ms") == 's';
    Work work(options, console);
    if (options.has('c')) {
        return hashComposite(work, isSha1);
    }
    return work.onEach([&](const AudioFile& file) { hashFile(work, file, isSha1); });
}

} // namespace quav::shntool
