#pragma once

#include "audio/ape/AdaptiveFilter.h"
#include "audio/ape/Level.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace quav::ape {

/// The filters of a level, as they are at the start of a frame. The second channel of the calls is
/// not looked at when there is one alone.
class FilterChain {
public:
    FilterChain(const Level& level, unsigned channels) {
        for (const FilterShape shape : level.filters) {
            filters_.push_back(makeFilter(shape, channels));
        }
    }

    /// False when readers disagree on the rounding of a sum.
    bool encode(std::span<std::int32_t> first, std::span<std::int32_t> second) {
        bool alike = true;
        for (const auto& filter : filters_) {
            alike = filter->encode(first, second) && alike;
        }
        return alike;
    }

    /// The same; `wide` rounds as those readers do that have more than 32 bits.
    bool decode(std::span<std::int32_t> first, std::span<std::int32_t> second, bool wide) {
        bool alike = true;
        for (std::size_t i = filters_.size(); i > 0; --i) {
            alike = filters_[i - 1]->decode(first, second, wide) && alike;
        }
        return alike;
    }

private:
    std::vector<std::unique_ptr<AdaptiveFilter>> filters_;
};

} // namespace quav::ape
