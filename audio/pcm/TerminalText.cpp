#include "audio/pcm/TerminalText.h"

#include <string_view>
#include <unistd.h>

namespace quav::pcm {

std::string escaped(const std::string& words, bool keepsLines) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto byte = static_cast<unsigned char>(words[i]);
        const auto next = static_cast<unsigned char>(i + 1 < words.size() ? words[i + 1] : 0);
        // UTF-8 writes the control characters from 80 to 9f as c2 and the same byte.
        const bool isLongControl = byte == 0xC2 && next >= 0x80 && next < 0xA0;
        if (byte == '\n' && keepsLines) {
            text += '\n';
        } else if (byte == '\n' || byte == '\t' || byte == '\r') {
            text += byte == '\n' ? "\\n" : byte == '\t' ? "\\t" : "\\r";
        } else if (byte < 0x20 || byte == 0x7F || isLongControl) {
            const unsigned char shown = isLongControl ? next : byte;
            text += {'\\', 'x', digits[shown >> 4U], digits[shown & 0xFU]};
            i += isLongControl ? 1 : 0;
        } else {
            text += words[i];
        }
    }
    return text;
}

std::string printable(const std::string& words, int fd, bool keepsLines) {
    return ::isatty(fd) == 1 ? escaped(words, keepsLines) : words;
}

} // namespace quav::pcm
