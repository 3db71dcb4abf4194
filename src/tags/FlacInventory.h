#pragma once

#include "tags/FileContent.h"
#include "tags/Inventory.h"

namespace quav {

/// Takes in every metadata block of a FLAC file whose marker stands there, also the chunks of a WAV
/// or AIFF file that are kept in them, and the tags of other kinds at the file's end. False when
/// the blocks cannot be followed up to the sound.
bool readFlacInventory(FileContent& file, std::uint64_t start, Inventory& inventory);

} // namespace quav
