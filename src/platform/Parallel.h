#pragma once

#include <cstddef>
#include <functional>

namespace quav {

/// Cuts 0 … count into as many pieces as there are cores, none shorter than `least`, and calls
/// `work(first, last)` for each on a thread of its own; returns when all have returned. The work
/// may not throw.
void inPieces(size_t count, size_t least, const std::function<void(size_t, size_t)>& work);

} // namespace quav
