#pragma once

#include <string>

namespace quav::shntool {

/// The text of a file that a user has written; "-" is standard input. Throws pcm::Failure when it
/// cannot be read, or has more than 16 MiB.
std::string readText(const std::string& path);

/// Writes a text to standard output, at once. Throws pcm::Failure, or pcm::ReaderGone.
void printText(const std::string& text);

} // namespace quav::shntool
