#include "checksums/Md5Lanes.h"

#include "checksums/Md5Kernel.h"

#include <vector>

namespace quav::md5lanes {

namespace {

using Four [[gnu::vector_size(16)]] = std::uint32_t;

struct FourLanes : PlainOperations<Four> {
    static void transpose(const std::uint8_t* const* data, std::size_t at, Four (&words)[16]) {
        for (std::size_t quarter = 0; quarter < 4; ++quarter) {
            const std::size_t from = at + quarter * sizeof(Four);
            const Four a = load(data[0] + from);
            const Four b = load(data[1] + from);
            const Four c = load(data[2] + from);
            const Four d = load(data[3] + from);
            const Four lowAb = __builtin_shufflevector(a, b, 0, 4, 1, 5);
            const Four highAb = __builtin_shufflevector(a, b, 2, 6, 3, 7);
            const Four lowCd = __builtin_shufflevector(c, d, 0, 4, 1, 5);
            const Four highCd = __builtin_shufflevector(c, d, 2, 6, 3, 7);
            words[quarter * 4] = __builtin_shufflevector(lowAb, lowCd, 0, 1, 4, 5);
            words[quarter * 4 + 1] = __builtin_shufflevector(lowAb, lowCd, 2, 3, 6, 7);
            words[quarter * 4 + 2] = __builtin_shufflevector(highAb, highCd, 0, 1, 4, 5);
            words[quarter * 4 + 3] = __builtin_shufflevector(highAb, highCd, 2, 3, 6, 7);
        }
    }
};

/// For any machine: the compiler makes of it what the least of them has.
void compressPortable(States& states, Streams& streams, std::size_t active) {
    takeCommon(streams, active, [&](const std::uint8_t* const* data, std::size_t blocks) {
        constexpr std::size_t width = FourLanes::width;
        if (active == 1) {
            compress<ScalarOperations, 1>(states, data, blocks, 0);
            return;
        }
        for (std::size_t first = 0; first < active; first += 2 * width) {
            if (active - first > width) {
                compress<FourLanes, 2>(states, data, blocks, first);
            } else {
                compress<FourLanes, 1>(states, data, blocks, first);
            }
        }
    });
}

std::vector<NamedKernel> usableKernels() {
    std::vector<NamedKernel> usable;
#if defined(__x86_64__)
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx512f")) {
        usable.push_back({"AVX-512", compressAvx512});
    }
    if (__builtin_cpu_supports("avx2")) {
        usable.push_back({"AVX2", compressAvx2});
    }
#endif
    usable.push_back({"portable", compressPortable});
    return usable;
}

} // namespace

std::span<const NamedKernel> kernels() {
    static const std::vector<NamedKernel> usable = usableKernels();
    return usable;
}

} // namespace quav::md5lanes
