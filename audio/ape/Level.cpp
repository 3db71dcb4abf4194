#include "audio/ape/Level.h"

#include <algorithm>
#include <array>

namespace quav::ape {

namespace {

constexpr std::array<FilterShape, 1> normal{{{16, 11}}};
constexpr std::array<FilterShape, 1> high{{{64, 11}}};
constexpr std::array<FilterShape, 2> extraHigh{{{256, 13}, {32, 10}}};
constexpr std::array<FilterShape, 3> insane{{{1280, 15}, {256, 13}, {16, 11}}};

constexpr std::uint32_t shortFrame = 73728;

constexpr std::array<Level, 5> levels{{
    {1000, shortFrame, {}},
    {2000, shortFrame, normal},
    {3000, shortFrame, high},
    {4000, shortFrame * 4, extraHigh},
    {5000, shortFrame * 16, insane, true},
}};

} // namespace

const Level* findLevel(unsigned number) {
    const auto* const found = std::find_if(
        levels.begin(), levels.end(), [&](const Level& level) { return level.number == number; });
    return found == levels.end() ? nullptr : found;
}

} // namespace quav::ape
