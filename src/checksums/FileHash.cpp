#include "checksums/FileHash.h"

#include "checksums/FileMd5Lanes.h"
#include "platform/RegularFile.h"

#include <QByteArray>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <md5.h>
#include <memory>
#include <numeric>
#include <sha1.h>
#include <sha2.h>
#include <vector>

namespace quav {

namespace {

// Large enough that the calls cost nothing, small enough to stay in the processor's cache.
constexpr std::size_t readBytes = std::size_t(256) * 1024;

constexpr std::size_t longestDigest = SHA512_DIGEST_LENGTH;

QString hexadecimal(std::span<const std::uint8_t> digest) {
    return QString::fromLatin1(QByteArray::fromRawData(reinterpret_cast<const char*>(digest.data()),
                                                       static_cast<qsizetype>(digest.size()))
                                   .toHex());
}

/// What the library's functions do for one kind of digest.
template <typename State>
FileHash::ComputationContext contextOf(void (*init)(State*),
                                       void (*update)(State*, const std::uint8_t*, std::size_t),
                                       void (*final)(std::uint8_t*, State*), std::size_t length) {
    const auto state = std::make_shared<State>();
    return {
        [=] { init(state.get()); },
        [=](const std::uint8_t* bytes, std::size_t count) { update(state.get(), bytes, count); },
        [=](std::uint8_t* digest) { final(digest, state.get()); }, length};
}

FileHash::ComputationContext md5() {
    return contextOf(MD5Init, MD5Update, MD5Final, MD5_DIGEST_LENGTH);
}

FileHash::ComputationContext sha1() {
    return contextOf(SHA1Init, SHA1Update, SHA1Final, SHA1_DIGEST_LENGTH);
}

FileHash::ComputationContext sha512() {
    return contextOf(SHA512Init, SHA512Update, SHA512Final, SHA512_DIGEST_LENGTH);
}

/// None when it was not to go on.
std::optional<FileHash::Digest> digestOf(const QString& path,
                                         const FileHash::ComputationContext& context,
                                         const FileHash::GoOn& goOn) {
    auto file = RegularFile::open(path);
    if (!file) {
        return tl::make_unexpected(FileHash::Error{file.error()});
    }
    std::vector<std::uint8_t> buffer(readBytes);
    context.init();
    const auto size = static_cast<double>(std::max<std::uint64_t>(1, file->size()));
    std::uint64_t done = 0;
    while (goOn(std::min(1.0, static_cast<double>(done) / size))) {
        const auto count = file->read(buffer);
        if (!count) {
            return tl::make_unexpected(FileHash::Error{count.error()});
        }
        if (*count == 0) {
            std::array<std::uint8_t, longestDigest> digest{};
            context.final(digest.data());
            return hexadecimal(std::span(digest).first(context.digestLength));
        }
        context.update(buffer.data(), *count);
        done += *count;
    }
    return std::nullopt;
}

double bytesIn(const QStringList& paths) {
    return std::accumulate(paths.begin(), paths.end(), 0.0, [](double sum, const QString& path) {
        return sum + static_cast<double>(QFileInfo(path).size());
    });
}

} // namespace

std::optional<QString> FileHash::hashOfFileAtPath(const QString& path,
                                                  const ComputationContext& context) {
    const auto digest = digestOf(path, context, [](double /*share*/) { return true; });
    return *digest ? std::optional(**digest) : std::nullopt;
}

std::optional<QString> FileHash::md5HashOfFileAtPath(const QString& path) {
    return hashOfFileAtPath(path, md5());
}

std::optional<QString> FileHash::sha1HashOfFileAtPath(const QString& path) {
    return hashOfFileAtPath(path, sha1());
}

std::optional<QString> FileHash::sha512HashOfFileAtPath(const QString& path) {
    return hashOfFileAtPath(path, sha512());
}

void FileHash::md5HashesOfFilesAtPaths(const QStringList& paths, const Done& done, const GoOn& goOn,
                                       md5lanes::Kernel kernel) {
    if (paths.size() == 1) {
        if (const auto digest = digestOf(paths.first(), md5(), goOn)) {
            done(0, *digest);
        }
        return;
    }
    FileMd5Lanes lanes(paths, kernel);
    const double bytes = std::max(1.0, bytesIn(paths));
    const auto wanted = [&] {
        return goOn(std::min(1.0, static_cast<double>(lanes.bytesRead()) / bytes));
    };
    qsizetype next = 0;
    while (next < paths.size() && wanted()) {
        lanes.advance();
        for (auto result = lanes.takeNext(); result && wanted(); result = lanes.takeNext()) {
            const int code = result->errorNumber;
            done(next, code == 0 ? Digest(hexadecimal(result->digest))
                                 : Digest(tl::make_unexpected(Error{code})));
            ++next;
        }
    }
}

} // namespace quav
