#pragma once

#include "tags/Inventory.h"

namespace quav {

/// The bytes that an ID3v2 tag takes up which begins like this; 0 when it is none. Ten bytes are
/// enough.
std::uint64_t id3v2Size(const QByteArray& beginning);

/// Takes in every frame of the ID3v2 tag that these bytes are.
void readId3v2Inventory(const QByteArray& bytes, Inventory& inventory);

} // namespace quav
