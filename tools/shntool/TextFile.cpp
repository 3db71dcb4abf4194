#include "shntool/TextFile.h"

#include "audio/pcm/Failure.h"
#include "audio/pcm/InputFile.h"
#include "audio/pcm/TemporaryFile.h"

#include <array>
#include <cstdint>
#include <unistd.h>

namespace quav::shntool {

using pcm::Failure;

std::string readText(const std::string& path) {
    constexpr std::size_t maximalSize = std::size_t{16} << 20;
    pcm::InputFile file = pcm::InputFile::open(path);
    std::array<std::uint8_t, 4096> piece{};
    std::string text;
    while (const std::size_t count = file.read(piece)) {
        text.append(piece.begin(), piece.begin() + count);
        if (text.size() > maximalSize) {
            throw Failure(Failure::Kind::Input, file.name() + ": is too long for a list");
        }
    }
    return text;
}

void printText(const std::string& text) {
    pcm::writeAll(STDOUT_FILENO, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()},
                  "standard output");
}

} // namespace quav::shntool
