#pragma once

#include <QString>

#include <tl/expected.hpp>

#include <cstdint>
#include <optional>

namespace quav {

/// Which file a path leads to and in what state: equal at two looks as long as nobody has put
/// another file there, written to it or renamed it.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;    ///< bytes
    std::int64_t changed = 0; ///< when content or status last changed, in nanoseconds since 1970

    bool operator==(const FileIdentity&) const = default;

    /// Links are followed; nothing when there is no file.
    static std::optional<FileIdentity> of(const QString& path);
};

/// True when something stands at the path itself: a link that leads nowhere counts.
bool isTaken(const QString& path);

/// True for a link that leads nowhere.
bool isDanglingLink(const QString& path);

/// Returns when a file and its name are on the disk and would survive a power cut; the error is the
/// system's number.
tl::expected<void, int> reachDisk(const QString& path);

/// Gives a file the time of modification of another one; false when that failed.
bool copyModificationTime(const QString& from, const QString& to);

} // namespace quav
