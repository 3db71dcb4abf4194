#pragma once

#include "audio/pcm/OrderedWork.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <functional>
#include <optional>
#include <utility>

namespace quav {

/// Pieces of work that run side by side and whose results are taken in their order.
template <typename Result>
class OrderedWork {
public:
    /// Calls `work(0)` to `work(count - 1)` on so many threads, and `take` with each result on the
    /// calling thread, in order, as early as that order allows. Ends early, after the work that
    /// has begun, when `take` says false. What `work` throws comes out here.
    static void run(std::size_t count, int threads, const std::function<Result(std::size_t)>& work,
                    const std::function<bool(std::size_t, Result)>& take) {
        // So far the work may run ahead of a piece that takes long: memory stays flat.
        constexpr std::size_t aheadPerThread = 8;
        struct Piece {
            std::size_t index = 0;
            std::optional<Result> result;
        };
        std::size_t next = 0;
        std::atomic<bool> goesOn = true;
        pcm::inOrder<Piece>(
            std::min(count, static_cast<std::size_t>(std::max(1, threads))),
            [&](Piece& piece) {
                piece = {next, std::nullopt};
                return goesOn && next++ < count;
            },
            [&](Piece& piece) {
                if (goesOn) {
                    piece.result = work(piece.index);
                }
            },
            [&](Piece& piece) { goesOn = goesOn && take(piece.index, std::move(*piece.result)); },
            aheadPerThread);
    }
};

} // namespace quav
