// Compiled with AVX-512; see Md5Kernel.h for what must not be in here.
#if defined(__x86_64__)

#include "checksums/Md5Kernel.h"

#include <immintrin.h>

namespace quav::md5lanes {

namespace {

typedef uint32_t Sixteen __attribute__((vector_size(64)));

__m512i native(Sixteen v) {
    return reinterpret_cast<__m512i>(v);
}

Sixteen ours(__m512i v) {
    return reinterpret_cast<Sixteen>(v);
}

struct SixteenLanes : PlainOperations<Sixteen> {
    static void settle(Sixteen& v) { asm("" : "+v"(v)); }

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

} // namespace

void compressAvx512(States& states, Streams& streams, size_t active) {
    takeCommon(streams, active, [&](const uint8_t* const* data, size_t blocks) {
        if (active == 1) {
            compress<ScalarOperations, 1>(states, data, blocks, 0);
        } else {
            compress<SixteenLanes, 1>(states, data, blocks, 0);
        }
    });
}

} // namespace quav::md5lanes

#endif
