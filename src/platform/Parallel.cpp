#include "platform/Parallel.h"

#include <algorithm>
#include <thread>
#include <vector>

namespace quav {

void inPieces(size_t count, size_t least, const std::function<void(size_t, size_t)>& work) {
    const size_t cores = std::max(1U, std::thread::hardware_concurrency());
    const size_t piece = std::max(least, (count + cores - 1) / cores);
    std::vector<std::thread> helpers;
    for (size_t first = piece; first < count; first += piece) {
        helpers.emplace_back(work, first, std::min(first + piece, count));
    }
    work(0, std::min(piece, count));
    for (std::thread& helper : helpers) {
        helper.join();
    }
}

} // namespace quav
