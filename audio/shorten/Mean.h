#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quav::shorten {

/// What the samples of a channel lie around: the mean of the means of its last blocks.
class Mean {
public:
    /// `version` is the stream's; with `blocks` 0 the mean is always `start`.
    Mean(unsigned version, std::size_t blocks, std::int32_t start)
        : rounds_(version >= 2), start_(start), means_(blocks, start),
          sum_(static_cast<std::int64_t>(blocks) * start) {}

    /// For samples whose lowest `shift` bits, which are 0, are not coded.
    std::int32_t offset(unsigned shift) const {
        if (means_.empty()) {
            return start_;
        }
        const auto offset = static_cast<std::int32_t>(divide(sum_, means_.size()));
        return rounds_ ? offset >> shift : offset;
    }

    /// A block of `size` samples went by whose sum, without the lowest bits, is `sum`.
    void add(std::int64_t sum, std::size_t size, unsigned shift) {
        if (means_.empty()) {
            return;
        }
        const auto mean = static_cast<std::uint32_t>(divide(sum, size));
        const auto value = static_cast<std::int32_t>(rounds_ ? mean << shift : mean);
        sum_ += std::int64_t{value} - means_[next_];
        means_[next_] = value;
        next_ = next_ + 1 == means_.size() ? 0 : next_ + 1;
    }

private:
    // Towards zero, of negative sums, too: it rounds only the positive ones to the nearest.
    std::int64_t divide(std::int64_t sum, std::size_t by) const {
        const auto divisor = static_cast<std::int64_t>(by);
        return (sum + (rounds_ ? divisor / 2 : 0)) / divisor;
    }

    bool rounds_; // since version 2
    std::int32_t start_;
    std::vector<std::int32_t> means_;
    std::size_t next_ = 0;
    std::int64_t sum_;
};

} // namespace quav::shorten
