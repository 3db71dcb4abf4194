#include "tags/FileContent.h"

#include <utility>

namespace quav {
namespace {

constexpr std::uint64_t mostBytes = std::uint64_t(128) << 20;

} // namespace

FileContent::FileContent(RegularFile file) : file_(std::move(file)), allowance_(mostBytes) {}

std::optional<QByteArray> FileContent::read(std::uint64_t from, std::uint64_t count) {
    if (count > allowance_) {
        return std::nullopt;
    }
    auto bytes = file_.readAt(from, count);
    if (!bytes || static_cast<std::uint64_t>(bytes->size()) != count) {
        return std::nullopt;
    }
    allowance_ -= count;
    return *std::move(bytes);
}

QByteArray FileContent::peek(std::uint64_t from, std::uint64_t most) const {
    return file_.readAt(from, most).value_or(QByteArray());
}

} // namespace quav
