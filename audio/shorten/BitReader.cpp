#include "audio/shorten/BitReader.h"

#include "audio/pcm/Failure.h"

#include <limits>

namespace quav::shorten {

std::uint32_t BitReader::bit() {
    if (filled_ == 0) {
        if (used_ == bytes_.size()) {
            input_.skip(used_);
            bytes_ = input_.peek(std::size_t{64} << 10);
            used_ = 0;
            if (bytes_.empty()) {
                damaged("is cut short");
            }
        }
        window_ = std::uint64_t{bytes_[used_++]} << 56;
        filled_ = 8;
    }
    const auto highest = static_cast<std::uint32_t>(window_ >> 63);
    window_ <<= 1;
    --filled_;
    return highest;
}

// Where the input's next part has to be fetched, and for long runs of zero bits.
std::uint32_t BitReader::longCode(unsigned lowBits) {
    std::uint64_t number = 0;
    while (bit() == 0) {
        if (++number > std::numeric_limits<std::uint32_t>::max() >> lowBits) {
            damaged("is damaged: a number is too large");
        }
    }
    for (unsigned i = 0; i < lowBits; ++i) {
        number = number << 1 | bit();
    }
    return static_cast<std::uint32_t>(number);
}

void BitReader::damaged(const char* what) const {
    throw pcm::Failure(pcm::Failure::Kind::Input, input_.name() + ": " + what);
}

} // namespace quav::shorten
