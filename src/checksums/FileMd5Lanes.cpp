#include "checksums/FileMd5Lanes.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

namespace quav {

namespace {

using md5lanes::blockSize;

// All buffers together stay in a core's own cache, where the kernel finds what was just read.
constexpr std::size_t bufferSize = std::size_t(64) * 1024;
constexpr std::size_t lengthSize = sizeof(std::uint64_t);
constexpr std::size_t bufferAndPadding = bufferSize + 2 * blockSize;

} // namespace

FileMd5Lanes::FileMd5Lanes(const QStringList& paths, md5lanes::Kernel kernel)
    : paths_(paths), kernel_(kernel), buffers_(md5lanes::lanes * bufferAndPadding) {
    for (std::size_t slot = 0; slot < lanes_.size(); ++slot) {
        lanes_[slot].slot = slot;
    }
}

std::uint8_t* FileMd5Lanes::bufferOf(const Lane& lane) {
    return buffers_.data() + lane.slot * bufferAndPadding;
}

void FileMd5Lanes::advance() {
    beginFiles();
    std::size_t lane = 0;
    while (lane < active_) {
        // A lane that ends gives its place to the last one, which is then looked at here.
        lane += streams_.blocks[lane] > 0 || fill(lane) ? 1 : 0;
    }
    if (active_ > 0) {
        kernel_(states_, streams_, active_);
    }
}

void FileMd5Lanes::beginFiles() {
    while (active_ < lanes_.size() && begun_ < paths_.size()) {
        results_.emplace_back();
        const qsizetype index = begun_++;
        auto file = RegularFile::open(paths_[index]);
        if (!file) {
            results_.back() = Result{file.error(), {}};
            continue;
        }
        Lane& lane = lanes_[active_];
        lane = {std::move(*file), lane.slot, index, 0, false};
        states_.begin(active_);
        streams_.blocks[active_] = 0;
        ++active_;
    }
}

/// Brings the lane its next blocks. False when it has come to its end.
bool FileMd5Lanes::fill(std::size_t at) {
    Lane& lane = lanes_[at];
    if (lane.isPadded) {
        Result result;
        states_.store(at, result.digest);
        finish(at, result);
        return false;
    }
    const auto count = lane.file->read({bufferOf(lane), bufferSize});
    if (!count) {
        finish(at, {count.error(), {}});
        return false;
    }
    lane.length += *count;
    const std::size_t filled = *count < bufferSize ? pad(lane, *count) : *count;
    streams_.data[at] = bufferOf(lane);
    streams_.blocks[at] = filled / blockSize;
    return true;
}

/// Adds what follows the last byte: a one bit, zeros up to the end of a block, the length in bits.
std::size_t FileMd5Lanes::pad(Lane& lane, std::size_t filled) {
    constexpr std::uint8_t oneBit = 0x80;
    constexpr unsigned bitsPerByte = 8;
    std::uint8_t* const buffer = bufferOf(lane);
    const std::size_t padded = (filled + 1 + lengthSize + blockSize - 1) / blockSize * blockSize;
    std::fill(buffer + filled, buffer + padded, std::uint8_t(0));
    buffer[filled] = oneBit;
    const std::uint64_t bits = lane.length * bitsPerByte;
    std::memcpy(buffer + padded - lengthSize, &bits, lengthSize);
    lane.isPadded = true;
    return padded;
}

void FileMd5Lanes::finish(std::size_t at, const Result& result) {
    results_[static_cast<std::size_t>(lanes_[at].index - taken_)] = result;
    lanes_[at].file.reset();
    --active_;
    std::swap(lanes_[at], lanes_[active_]);
    std::swap(streams_.data[at], streams_.data[active_]);
    std::swap(streams_.blocks[at], streams_.blocks[active_]);
    states_.copy(active_, at);
}

std::optional<FileMd5Lanes::Result> FileMd5Lanes::takeNext() {
    if (results_.empty() || !results_.front()) {
        return std::nullopt;
    }
    const Result result = *results_.front();
    results_.pop_front();
    ++taken_;
    return result;
}

} // namespace quav
