#pragma once

// The one MD5 kernel, for vectors of any width. Each file that includes it is compiled for another
// instruction set; so all of it is internal to that file, and nothing of the standard library is
// used that could leave a function behind which the linker shares with code for older machines.

#include "checksums/Md5Streams.h"

#include <cstddef>
#include <cstdint>

namespace quav::md5lanes {

// Those that are compiled apart; there are none of them for other machines.
void compressAvx2(States& states, Streams& streams, size_t active);
void compressAvx512(States& states, Streams& streams, size_t active);

namespace {

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "words are read as they lie in memory");

inline constexpr size_t bytesPerWord = 4;

inline constexpr uint32_t sineTable[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

inline constexpr int rotations[4][4] = {
    {7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

constexpr int wordOf(int step) {
    constexpr int stride[4] = {1, 5, 3, 7};
    constexpr int offset[4] = {0, 1, 5, 0};
    return (stride[step / 16] * step + offset[step / 16]) % 16;
}

/// The table with each number as often as a vector has lanes.
template <size_t width>
struct WideTable {
    constexpr WideTable() {
        for (size_t step = 0; step < 64; ++step) {
            for (size_t lane = 0; lane < width; ++lane) {
                rows[step][lane] = sineTable[step];
            }
        }
    }
    alignas(64) uint32_t rows[64][width]{};
};

/// What vectors of the compiler's own kind do. Where an instruction set has a shorter way, a
/// derived struct has it, too.
template <typename V>
struct PlainOperations {
    using Vector = V;
    static constexpr size_t width = sizeof(V) / bytesPerWord;

    static V load(const void* from) {
        V vector;
        __builtin_memcpy(&vector, from, sizeof vector);
        return vector;
    }
    static void store(void* to, V vector) { __builtin_memcpy(to, &vector, sizeof vector); }

    /// From here on the compiler takes the value as it is, and not as the sum that made it.
    static void settle([[maybe_unused]] V& v) {
#if defined(__x86_64__)
        asm("" : "+x"(v));
#endif
    }

    template <int count>
    static V rotated(V v) {
        return (v << count) | (v >> (32 - count));
    }

    // Each waits as little as possible for b, which the step before has only just made.
    static V f(V b, V c, V d) {
        return d ^ (b & (c ^ d));
    }
    static V g(V b, V c, V d) {
        return (b & d) + (c & ~d);
    }
    static V h(V b, V c, V d) {
        return b ^ (c ^ d);
    }
    static V i(V b, V c, V d) {
        return c ^ (b | ~d);
    }
};

/// So many vectors go through the steps together: while one waits, another is at work.
template <typename Operations, size_t groups>
struct Engine {
    using V = typename Operations::Vector;

    V state[4][groups]{};
    V before[4][groups]{};
    V message[16][groups]{};

    static constexpr WideTable<Operations::width> table{};
    const uint32_t (*sines)[Operations::width] = hidden(table.rows);

    /// The same pointer, of which the compiler knows nothing: it would make each vector of equal
    /// numbers from one number, which takes longer than to load it.
    static const uint32_t (*hidden(const uint32_t (*rows)[Operations::width]))[Operations::width] {
        asm("" : "+r"(rows));
        return rows;
    }

    template <int step>
    [[gnu::always_inline]] inline void take() {
        constexpr int a = (64 - step) % 4;
        constexpr int b = (a + 1) % 4;
        constexpr int c = (a + 2) % 4;
        constexpr int d = (a + 3) % 4;
        constexpr int round = step / 16;
        constexpr int rotation = rotations[round][step % 4];
        for (size_t k = 0; k < groups; ++k) {
            const V x = state[b][k];
            const V y = state[c][k];
            const V z = state[d][k];
            // What is known before b is added up by itself; the compiler, which finds all sums
            // alike, must not take it apart again and put another addition behind b.
            V sum = state[a][k] + (message[wordOf(step)][k] + Operations::load(sines[step]));
            Operations::settle(sum);
            if constexpr (round == 0) {
                sum += Operations::f(x, y, z);
            } else if constexpr (round == 1) {
                sum += Operations::g(x, y, z);
            } else if constexpr (round == 2) {
                sum += Operations::h(x, y, z);
            } else {
                sum += Operations::i(x, y, z);
            }
            state[a][k] = x + Operations::template rotated<rotation>(sum);
        }
    }

    template <int step>
    [[gnu::always_inline]] inline void takeFrom() {
        if constexpr (step < 64) {
            take<step>();
            takeFrom<step + 1>();
        }
    }

    [[gnu::always_inline]] inline void load(const States& states, size_t first) {
        for (size_t word = 0; word < 4; ++word) {
            for (size_t k = 0; k < groups; ++k) {
                state[word][k] =
                    Operations::load(&states.words[word][first + k * Operations::width]);
            }
        }
    }

    [[gnu::always_inline]] inline void store(States& states, size_t first) const {
        for (size_t word = 0; word < 4; ++word) {
            for (size_t k = 0; k < groups; ++k) {
                Operations::store(&states.words[word][first + k * Operations::width],
                                  state[word][k]);
            }
        }
    }

    [[gnu::always_inline]] inline void beginBlock(const uint8_t* const* data, size_t at) {
        for (size_t k = 0; k < groups; ++k) {
            V words[16];
            Operations::transpose(data + k * Operations::width, at, words);
            for (size_t word = 0; word < 16; ++word) {
                message[word][k] = words[word];
            }
        }
        __builtin_memcpy(before, state, sizeof state);
    }

    [[gnu::always_inline]] inline void endBlock() {
        for (size_t word = 0; word < 4; ++word) {
            for (size_t k = 0; k < groups; ++k) {
                state[word][k] += before[word][k];
            }
        }
    }

    void compress(States& states, const uint8_t* const* data, size_t blocks, size_t first) {
        load(states, first);
        for (size_t block = 0; block < blocks; ++block) {
            beginBlock(data + first, block * blockSize);
            takeFrom<0>();
            endBlock();
        }
        store(states, first);
    }
};

/// Lanes `first` and following, as many as the groups hold.
template <typename Operations, size_t groups>
void compress(States& states, const uint8_t* const* data, size_t blocks, size_t first) {
    Engine<Operations, groups> engine;
    engine.compress(states, data, blocks, first);
}

/// One lane alone.
struct ScalarOperations : PlainOperations<uint32_t> {
    static void settle(uint32_t& v) { asm("" : "+r"(v)); }

    static void transpose(const uint8_t* const* data, size_t at, uint32_t (&words)[16]) {
        __builtin_memcpy(words, data[0] + at, sizeof words);
    }
};

/// Pointers for all lanes: those that are not active read what the first one reads.
struct Pointers {
    Pointers(const Streams& streams, size_t active) {
        for (size_t lane = 0; lane < lanes; ++lane) {
            all[lane] = streams.data[lane < active ? lane : 0];
        }
    }
    const uint8_t* all[lanes]{};
};

/// Takes what all lanes have with one call of `work` over it, and passes it.
template <typename Work>
void takeCommon(Streams& streams, size_t active, Work work) {
    const size_t blocks = streams.common(active);
    work(Pointers(streams, active).all, blocks);
    for (size_t lane = 0; lane < active; ++lane) {
        streams.pass(lane, blocks);
    }
}

} // namespace
} // namespace quav::md5lanes
