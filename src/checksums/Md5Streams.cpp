#include "checksums/Md5Streams.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace quav::md5lanes {

namespace {

constexpr std::array<std::uint32_t, 4> initialState{0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};

} // namespace

std::size_t Streams::common(std::size_t active) const {
    return *std::min_element(blocks, blocks + active);
}

void Streams::pass(std::size_t lane, std::size_t count) {
    data[lane] += count * blockSize;
    blocks[lane] -= count;
}

void States::begin(std::size_t lane) {
    for (std::size_t word = 0; word < initialState.size(); ++word) {
        words[word][lane] = initialState[word];
    }
}

void States::exchange(std::size_t one, std::size_t other) {
    for (auto& word : words) {
        std::swap(word[one], word[other]);
    }
}

void States::store(std::size_t lane, std::span<std::uint8_t, 16> digest) const {
    for (std::size_t word = 0; word < initialState.size(); ++word) {
        std::memcpy(&digest[word * sizeof words[0][0]], &words[word][lane], sizeof words[0][0]);
    }
}

} // namespace quav::md5lanes
