#pragma once

#include "tags/FileContent.h"
#include "tags/Inventory.h"

namespace quav {

/// Takes in the tags of a WavPack file, and the chunks of the WAV file that it was made from. False
/// when its blocks cannot be followed.
bool readWavpackInventory(FileContent& file, std::uint64_t start, Inventory& inventory);

} // namespace quav
