#pragma once

#include "platform/RegularFile.h"

#include <QByteArray>

#include <cstdint>
#include <optional>

namespace quav {

/// Reads pieces of a file, and no more of it altogether than any honest file has in tags, so that
/// memory does not follow what a hostile one claims.
class FileContent {
public:
    explicit FileContent(RegularFile file);

    std::uint64_t size() const { return file_.size(); }

    /// Exactly so many bytes; nothing when they are not all there or are too many.
    std::optional<QByteArray> read(std::uint64_t from, std::uint64_t count);

    /// So many bytes or as many as there are, for looking at what something is.
    QByteArray peek(std::uint64_t from, std::uint64_t most) const;

private:
    RegularFile file_;
    std::uint64_t allowance_;
};

} // namespace quav
