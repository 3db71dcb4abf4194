#include "checksums/FileMd5Lanes.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

namespace quav {

namespace {

using md5lanes::blockSize;

// All buffers together stay in a core's own cache, where the kernel finds what was just read. The
// lanes in front may be faster, by half: they read more, so that all are empty at the same time.
constexpr std::size_t readSize = std::size_t(64) * 1024;
constexpr std::size_t bufferSize = readSize / 2 * 3;
constexpr std::size_t front = 2;
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
    bringLongestToFront();
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
    // After so many files the caller gets what there is, also where not one of them can be opened.
    const qsizetype end = std::min<qsizetype>(paths_.size(), begun_ + md5lanes::lanes);
    while (active_ < lanes_.size() && begun_ < end) {
        results_.emplace_back();
        const qsizetype index = begun_++;
        auto file = RegularFile::open(paths_[index]);
        if (!file) {
            results_.back() = Result{file.error(), {}};
            continue;
        }
        Lane& lane = lanes_[active_];
        lane = {std::move(*file), lane.slot, index, 0, 0, false};
        states_.begin(active_);
        streams_.blocks[active_] = 0;
        ++active_;
    }
}

/// The kernel may be faster with the lanes in front. Those are to be the ones with the most to do,
/// so that files of about the same size end together. Lanes change places only where one in front
/// is empty, most often all are then, and stay in step.
void FileMd5Lanes::bringLongestToFront() {
    for (std::size_t at = 0; at < std::min(front, active_); ++at) {
        if (streams_.blocks[at] > 0) {
            continue;
        }
        std::size_t longest = at;
        for (std::size_t lane = at + 1; lane < active_; ++lane) {
            longest = bytesLeft(lane) > bytesLeft(longest) ? lane : longest;
        }
        exchange(at, longest);
    }
}

/// What the kernel has not had of the lane's file, going by the size that it had in the beginning.
std::uint64_t FileMd5Lanes::bytesLeft(std::size_t at) const {
    const Lane& lane = lanes_[at];
    const std::uint64_t size = lane.file->size();
    return size - std::min(size, lane.length) + streams_.blocks[at] * blockSize;
}

void FileMd5Lanes::exchange(std::size_t one, std::size_t other) {
    std::swap(lanes_[one], lanes_[other]);
    std::swap(streams_.data[one], streams_.data[other]);
    std::swap(streams_.blocks[one], streams_.blocks[other]);
    states_.exchange(one, other);
}

/// A disk that has to move its head between so many files would do little else: it is to bring
/// large pieces of each.
void FileMd5Lanes::readAhead(Lane& lane) {
    constexpr std::uint64_t piece = std::uint64_t(8) * 1024 * 1024;
    const std::uint64_t size = lane.file->size();
    if (size > readSize && lane.announced < size && lane.length + piece / 2 >= lane.announced) {
        lane.file->announce(lane.announced, piece);
        lane.announced += piece;
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
    readAhead(lane);
    const std::size_t wanted = at < front ? bufferSize : readSize;
    const auto count = lane.file->read({bufferOf(lane), wanted});
    if (!count) {
        finish(at, {count.error(), {}});
        return false;
    }
    lane.length += *count;
    bytesRead_ += *count;
    const std::size_t filled = *count < wanted ? pad(lane, *count) : *count;
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
    exchange(at, active_);
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
