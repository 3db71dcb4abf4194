// Compiled with AVX2; see Md5Kernel.h for what must not be in here.
#if defined(__x86_64__)

#include "checksums/Md5Kernel.h"

namespace quav::md5lanes {

namespace {

using Eight [[gnu::vector_size(32)]] = uint32_t;

struct EightLanes : PlainOperations<Eight> {
    static Eight interleavedLow(Eight a, Eight b) {
        return __builtin_shufflevector(a, b, 0, 8, 1, 9, 4, 12, 5, 13);
    }
    static Eight interleavedHigh(Eight a, Eight b) {
        return __builtin_shufflevector(a, b, 2, 10, 3, 11, 6, 14, 7, 15);
    }
    static Eight pairsLow(Eight a, Eight b) {
        return __builtin_shufflevector(a, b, 0, 1, 8, 9, 4, 5, 12, 13);
    }
    static Eight pairsHigh(Eight a, Eight b) {
        return __builtin_shufflevector(a, b, 2, 3, 10, 11, 6, 7, 14, 15);
    }

    static void transpose(const uint8_t* const* data, size_t at, Eight (&words)[16]) {
        for (size_t half = 0; half < 2; ++half) {
            Eight quads[2][4]; // of lanes 0 to 3 and 4 to 7, each for words 0 and 4, 1 and 5, …
            for (size_t four = 0; four < 2; ++four) {
                const uint8_t* const* lane = data + four * 4;
                const size_t from = at + half * sizeof(Eight);
                const Eight a = load(lane[0] + from);
                const Eight b = load(lane[1] + from);
                const Eight c = load(lane[2] + from);
                const Eight d = load(lane[3] + from);
                quads[four][0] = pairsLow(interleavedLow(a, b), interleavedLow(c, d));
                quads[four][1] = pairsHigh(interleavedLow(a, b), interleavedLow(c, d));
                quads[four][2] = pairsLow(interleavedHigh(a, b), interleavedHigh(c, d));
                quads[four][3] = pairsHigh(interleavedHigh(a, b), interleavedHigh(c, d));
            }
            for (size_t word = 0; word < 4; ++word) {
                words[half * 8 + word] = __builtin_shufflevector(quads[0][word], quads[1][word], 0,
                                                                 1, 2, 3, 8, 9, 10, 11);
                words[half * 8 + word + 4] = __builtin_shufflevector(quads[0][word], quads[1][word],
                                                                     4, 5, 6, 7, 12, 13, 14, 15);
            }
        }
    }
};

} // namespace

void compressAvx2(States& states, Streams& streams, size_t active) {
    takeCommon(streams, active, [&](const uint8_t* const* data, size_t blocks) {
        if (active == 1) {
            compress<ScalarOperations, 1>(states, data, blocks, 0);
        } else if (active <= EightLanes::width) {
            compress<EightLanes, 1>(states, data, blocks, 0);
        } else {
            compress<EightLanes, 2>(states, data, blocks, 0);
        }
    });
}

} // namespace quav::md5lanes

#endif
