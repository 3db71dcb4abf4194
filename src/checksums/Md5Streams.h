#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// MD5 (RFC 1321) of several streams side by side. One stream cannot be hurried, since each of its
/// steps waits for the one before; the lanes of a vector register take as many streams at once.
namespace quav::md5lanes {

inline constexpr std::size_t lanes = 16;
inline constexpr std::size_t blockSize = 64;

/// The four words of each lane's state, words first.
struct States {
    alignas(64) std::uint32_t words[4][lanes];

    /// Gives a lane the state that every digest begins with.
    void begin(std::size_t lane);
    void exchange(std::size_t one, std::size_t other);
    /// The digest that the state comes to, when all blocks and the padding went in.
    void store(std::size_t lane, std::span<std::uint8_t, 16> digest) const;
};

/// The blocks that lie ready for each lane.
struct Streams {
    const std::uint8_t* data[lanes];
    std::size_t blocks[lanes];

    /// The most blocks that all of the lanes 0 to active - 1 have.
    std::size_t common(std::size_t active) const;
    /// Passes so many blocks of a lane.
    void pass(std::size_t lane, std::size_t count);
};

/// Takes blocks of the lanes 0 to active - 1 into their states until one lane has none left; each
/// of them has some. A kernel may get further with some lanes than with others: it begins with
/// those in front. What becomes of the other lanes' states is not defined.
using Kernel = void (*)(States& states, Streams& streams, std::size_t active);

} // namespace quav::md5lanes
