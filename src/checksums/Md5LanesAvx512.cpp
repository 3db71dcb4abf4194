// Compiled with AVX-512; see Md5Kernel.h for what must not be in here.
#if defined(__x86_64__)

#include "checksums/Md5Kernel.h"

#include <immintrin.h>

namespace quav::md5lanes {

namespace {

using Sixteen [[gnu::vector_size(64)]] = uint32_t;

__m512i native(Sixteen v) {
    return reinterpret_cast<__m512i>(v);
}

Sixteen ours(__m512i v) {
    return reinterpret_cast<Sixteen>(v);
}

struct SixteenLanes : PlainOperations<Sixteen> {
    // Volatile, here and below: the steps of vectors and of single lanes stay in turn as they are
    // written, or the one kind would wait in line behind the other.
    static void settle(Sixteen& v) { asm volatile("" : "+v"(v)); }

    template <int count>
    static Sixteen rotated(Sixteen v) {
        return ours(_mm512_rol_epi32(native(v), count));
    }

    /// The function of three bits that the table's eight bits are.
    template <int table>
    static Sixteen bits(Sixteen x, Sixteen y, Sixteen z) {
        return ours(_mm512_ternarylogic_epi32(native(x), native(y), native(z), table));
    }

    static Sixteen f(Sixteen b, Sixteen c, Sixteen d) { return bits<0xca>(b, c, d); }
    static Sixteen g(Sixteen b, Sixteen c, Sixteen d) { return bits<0xca>(d, b, c); }
    static Sixteen h(Sixteen b, Sixteen c, Sixteen d) { return bits<0x96>(b, c, d); }
    static Sixteen i(Sixteen b, Sixteen c, Sixteen d) { return bits<0x2d>(c, b, d); }

    static void transpose(const uint8_t* const* data, size_t at, Sixteen (&words)[16]) {
        // Four lanes become four quads, each with a word of all of them, for words 0, 4, 8, 12 of
        // the first quad, 1, 5, 9, 13 of the second, and so on.
        __m512i quads[4][4];
        for (size_t four = 0; four < 4; ++four) {
            const uint8_t* const* lane = data + four * 4;
            const __m512i a = _mm512_loadu_si512(lane[0] + at);
            const __m512i b = _mm512_loadu_si512(lane[1] + at);
            const __m512i c = _mm512_loadu_si512(lane[2] + at);
            const __m512i d = _mm512_loadu_si512(lane[3] + at);
            const __m512i lowAb = _mm512_unpacklo_epi32(a, b);
            const __m512i highAb = _mm512_unpackhi_epi32(a, b);
            const __m512i lowCd = _mm512_unpacklo_epi32(c, d);
            const __m512i highCd = _mm512_unpackhi_epi32(c, d);
            quads[four][0] = _mm512_unpacklo_epi64(lowAb, lowCd);
            quads[four][1] = _mm512_unpackhi_epi64(lowAb, lowCd);
            quads[four][2] = _mm512_unpacklo_epi64(highAb, highCd);
            quads[four][3] = _mm512_unpackhi_epi64(highAb, highCd);
        }
        for (size_t word = 0; word < 4; ++word) {
            constexpr int evenQuads = 0x88;
            constexpr int oddQuads = 0xdd;
            const __m512i even01 = _mm512_shuffle_i32x4(quads[0][word], quads[1][word], evenQuads);
            const __m512i odd01 = _mm512_shuffle_i32x4(quads[0][word], quads[1][word], oddQuads);
            const __m512i even23 = _mm512_shuffle_i32x4(quads[2][word], quads[3][word], evenQuads);
            const __m512i odd23 = _mm512_shuffle_i32x4(quads[2][word], quads[3][word], oddQuads);
            words[word] = ours(_mm512_shuffle_i32x4(even01, even23, evenQuads));
            words[word + 4] = ours(_mm512_shuffle_i32x4(odd01, odd23, evenQuads));
            words[word + 8] = ours(_mm512_shuffle_i32x4(even01, even23, oddQuads));
            words[word + 12] = ours(_mm512_shuffle_i32x4(odd01, odd23, oddQuads));
        }
    }
};

/// One lane that goes through the steps in the registers for single numbers.
struct SingleLane {
    uint32_t state[4]{};
    uint32_t before[4]{};
    const uint8_t* data = nullptr;

    static void settle(uint32_t& v) { asm volatile("" : "+r"(v)); }

    template <int step>
    [[gnu::always_inline]] inline void take() {
        using Operations = ScalarOperations;
        constexpr int a = (64 - step) % 4;
        constexpr int round = step / 16;
        const uint32_t x = state[(a + 1) % 4];
        const uint32_t y = state[(a + 2) % 4];
        const uint32_t z = state[(a + 3) % 4];
        uint32_t word = 0;
        __builtin_memcpy(&word, data + wordOf(step) * sizeof word, sizeof word);
        uint32_t sum = state[a] + (word + sineTable[step]);
        settle(sum);
        if constexpr (round == 0) {
            sum += Operations::f(x, y, z);
        } else if constexpr (round == 1) {
            // In two parts, of which only the second one waits for the step before.
            sum += y & ~z;
            settle(sum);
            sum += x & z;
        } else if constexpr (round == 2) {
            sum += Operations::h(x, y, z);
        } else {
            sum += Operations::i(x, y, z);
        }
        state[a] = x + Operations::rotated<rotations[round][step % 4]>(sum);
    }

    [[gnu::always_inline]] inline void beginBlock() {
        __builtin_memcpy(before, state, sizeof state);
    }

    [[gnu::always_inline]] inline void endBlock() {
        for (int word = 0; word < 4; ++word) {
            state[word] += before[word];
            settle(state[word]); // one by one: they must not move to a vector register and back
        }
        data += blockSize;
    }
};

/// The first two lanes, each by itself, beside all others in a vector. Steps of either kind wait
/// for the one before and leave most of the processor idle; it has room for both at once. A step
/// of a single lane is done sooner, hence such a lane gets further.
struct MixedEngine {
    static constexpr size_t singles = 2;
    static constexpr int singleBlocks = 3; ///< in the time of `vectorBlocks`
    static constexpr int vectorBlocks = 2;
    static constexpr int steps = 64;

    Engine<SixteenLanes, 1> vector;
    SingleLane first;
    SingleLane second;
    const uint8_t* const* data = nullptr;
    size_t at = 0;

    template <int step>
    [[gnu::always_inline]] inline void takeSingle(SingleLane& lane) {
        if constexpr (step == 0) {
            lane.beginBlock();
        }
        lane.take<step>();
        if constexpr (step == steps - 1) {
            lane.endBlock();
        }
    }

    template <int step>
    [[gnu::always_inline]] inline void takeVector() {
        if constexpr (step == 0) {
            vector.beginBlock(data, at);
            at += blockSize;
        }
        vector.take<step>();
        if constexpr (step == steps - 1) {
            vector.endBlock();
        }
    }

    template <int vectorStep, int singleStep>
    [[gnu::always_inline]] inline void takeFrom() {
        if constexpr (vectorStep < steps * vectorBlocks) {
            if constexpr (singleStep * vectorBlocks < (vectorStep + 1) * singleBlocks) {
                takeSingle<singleStep % steps>(first);
                takeSingle<singleStep % steps>(second);
                takeFrom<vectorStep, singleStep + 1>();
            } else {
                takeVector<vectorStep % steps>();
                takeFrom<vectorStep + 1, singleStep>();
            }
        }
    }
};

/// `turns` times as many blocks as the mixed engine takes at once.
void compressMixed(States& states, const uint8_t* const* single, const uint8_t* const* data,
                   size_t turns) {
    MixedEngine engine;
    engine.data = data;
    engine.first.data = single[0];
    engine.second.data = single[1];
    engine.vector.load(states, 0);
    for (size_t word = 0; word < 4; ++word) {
        engine.first.state[word] = states.words[word][0];
        engine.second.state[word] = states.words[word][1];
    }
    for (; turns > 0; --turns) {
        engine.takeFrom<0, 0>();
    }
    engine.vector.store(states, 0);
    for (size_t word = 0; word < 4; ++word) {
        states.words[word][0] = engine.first.state[word];
        states.words[word][1] = engine.second.state[word];
    }
}

size_t mixedBlocks(size_t lane) {
    return lane < MixedEngine::singles ? MixedEngine::singleBlocks : MixedEngine::vectorBlocks;
}

/// As many whole turns of the mixed engine as there are blocks for. Needs more lanes than single
/// ones.
void takeMixed(States& states, Streams& streams, size_t active) {
    size_t turns = streams.blocks[0] / mixedBlocks(0);
    for (size_t lane = 1; lane < active; ++lane) {
        const size_t its = streams.blocks[lane] / mixedBlocks(lane);
        turns = its < turns ? its : turns;
    }
    // The vector's places for the single lanes are idle: they read what another lane reads.
    const uint8_t* data[lanes];
    for (size_t lane = 0; lane < lanes; ++lane) {
        const bool isInVector = lane >= MixedEngine::singles && lane < active;
        data[lane] = streams.data[isInVector ? lane : MixedEngine::singles];
    }
    compressMixed(states, streams.data, data, turns);
    for (size_t lane = 0; lane < active; ++lane) {
        streams.pass(lane, turns * mixedBlocks(lane));
    }
}

} // namespace

void compressAvx512(States& states, Streams& streams, size_t active) {
    if (active > MixedEngine::singles) {
        takeMixed(states, streams, active);
    }
    // All of what few lanes have; of many lanes, what is left and too short for the mixed engine.
    takeCommon(streams, active, [&](const uint8_t* const* data, size_t blocks) {
        if (active == 1) {
            compress<ScalarOperations, 1>(states, data, blocks, 0);
        } else if (active == 2) {
            compress<ScalarOperations, 2>(states, data, blocks, 0);
        } else if (blocks > 0) {
            compress<SixteenLanes, 1>(states, data, blocks, 0);
        }
    });
}

} // namespace quav::md5lanes

#endif
