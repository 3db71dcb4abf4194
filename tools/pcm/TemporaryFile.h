#pragma once

#include "pcm/UniqueFd.h"

#include <cstdint>
#include <span>
#include <string>

namespace quav::pcm {

/// The folder that a path stands in; "." when it names none.
std::string folderOf(const std::string& path);

/// A name in a folder that no other process uses and that folder listings hide.
std::string temporaryName(const std::string& folder);

/// A file without a name, for reading and writing, in the folder of `beside`, or in the folder for
/// temporary files when `beside` is "-". Throws Failure with Kind::Write.
UniqueFd unnamedFile(const std::string& beside);

/// Writes all of it. Throws Failure with Kind::Write, or ReaderGone for a pipe that nobody reads.
void writeAll(int fd, std::span<const std::uint8_t> bytes, const std::string& name);

} // namespace quav::pcm
