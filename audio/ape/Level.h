#pragma once

#include <cstdint>
#include <span>

namespace quav::ape {

/// A stage of prediction: how many past samples it weighs, and by how many bits the sum is scaled
/// down.
struct FilterShape {
    unsigned taps = 0;
    unsigned shift = 0;
};

/// How hard a stream of version 3950 and later is compressed.
struct Level {
    unsigned number = 0;                  ///< 1000, 2000 ... 5000, as streams and users name it
    std::uint32_t frameBlocks = 0;        ///< blocks of every frame but the last
    std::span<const FilterShape> filters; ///< in the encoder's order
    bool hasWideReaders = false; ///< readers disagree on whether its stereo sums have 32 or 64 bits
};

/// Nothing when there is no such level.
const Level* findLevel(unsigned number);

} // namespace quav::ape
