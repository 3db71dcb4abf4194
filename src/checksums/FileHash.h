#pragma once

#include "checksums/Md5Lanes.h"

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

namespace quav {

/// Digests of whole files, in lower-case hexadecimal digits. Everything may be called on any
/// thread.
class FileHash {
public:
    /// Why there is no digest: a number of the system's list (errno).
    struct Error {
        int code;
    };
    using Digest = tl::expected<QString, Error>;

    /// A digest under way, as four members. The state behind the operations is their own.
    struct ComputationContext {
        std::function<void()> init;
        std::function<void(const std::uint8_t* bytes, std::size_t count)> update;
        std::function<void(std::uint8_t* digest)> final;
        std::size_t digestLength; ///< in bytes
    };

    /// None when the file cannot be opened or read.
    static std::optional<QString> md5HashOfFileAtPath(const QString& path);
    static std::optional<QString> sha1HashOfFileAtPath(const QString& path);
    static std::optional<QString> sha512HashOfFileAtPath(const QString& path);
    static std::optional<QString> hashOfFileAtPath(const QString& path,
                                                   const ComputationContext& context);

    using Done = std::function<void(qsizetype index, const Digest& digest)>;
    /// Told from time to time how much of all bytes has been read, 0 to 1; false: that is enough.
    using GoOn = std::function<bool(double share)>;

    /// The MD5 of many files, several of them at a time. Calls `done` once a file, in their order,
    /// on the calling thread, as early as that order allows. Returns soon, and calls nothing more,
    /// when `goOn` says no. Only regular files have a digest. The kernel is the fastest one unless
    /// another is asked for.
    static void
    md5HashesOfFilesAtPaths(const QStringList& paths, const Done& done, const GoOn& goOn,
                            md5lanes::Kernel kernel = md5lanes::kernels().front().kernel);
};

} // namespace quav
