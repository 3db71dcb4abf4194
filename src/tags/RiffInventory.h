#pragma once

#include "tags/FileContent.h"
#include "tags/Inventory.h"

#include <optional>

namespace quav {

/// WAV or AIFF; both name their chunks by four letters, but not the same ones.
enum class RiffKind { Wave, Aiff };

/// What a file is that begins like this; twelve bytes are enough.
std::optional<RiffKind> riffKindOf(const QByteArray& beginning);

/// Takes in every chunk of a WAV, RF64 or AIFF file that begins there, and what follows the last.
/// False when there are far too many.
bool readRiffInventory(FileContent& file, std::uint64_t start, Inventory& inventory);

/// Takes in one chunk, wherever it is kept.
void addChunk(RiffKind kind, const QByteArray& id, const QByteArray& content, Inventory& inventory);

} // namespace quav
