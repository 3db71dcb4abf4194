#include "audio/pcm/AiffSink.h"

#include "audio/pcm/Failure.h"
#include "audio/pcm/Samples.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <string_view>

namespace quav::pcm {

namespace {

using Bytes = std::span<const std::uint8_t>;

class BigEndianBytes {
public:
    void id(std::string_view text) { bytes_.insert(bytes_.end(), text.begin(), text.end()); }
    void number(std::uint64_t value, unsigned width) {
        while (width-- > 0) {
            bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * width)));
        }
    }
    // An 80-bit floating-point number.
    void rate(std::uint32_t value) {
        const int shift = std::countl_zero(std::uint64_t{value});
        number(static_cast<std::uint64_t>(16383 + 63 - shift), 2);
        number(std::uint64_t{value} << shift, 8);
    }
    Bytes bytes() const { return bytes_; }

private:
    std::vector<std::uint8_t> bytes_;
};

} // namespace

AiffSink::AiffSink(ByteSink& to, const PcmFormat& from, std::uint64_t dataBytes,
                   const std::string& name)
    : file_(to), from_(from), to_(from), left_(dataBytes - dataBytes % from.blockAlign()),
      pads_(left_ % 2 == 1) {
    to_.bigEndian = true;
    to_.isUnsigned = false;
    const std::uint64_t padded = left_ + left_ % 2;
    if (padded > 0xFFFFFFFF - 100) {
        throw Failure(Failure::Kind::Unsupported, name + ": AIFF ends at 4 GiB");
    }
    BigEndianBytes bytes;
    bytes.id("FORM");
    bytes.number(4 + 8 + 18 + 8 + 8 + padded, 4);
    bytes.id("AIFFCOMM");
    bytes.number(18, 4);
    bytes.number(from_.channels, 2);
    bytes.number(left_ / from_.blockAlign(), 4);
    bytes.number(from_.bitsPerSample, 2);
    bytes.rate(from_.sampleRate);
    bytes.id("SSND");
    bytes.number(8 + left_, 4);
    bytes.number(0, 8); // no offset, no blocks
    file_.write(bytes.bytes());
}

void AiffSink::write(Bytes bytes) {
    bytes = bytes.first(static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), left_)));
    left_ -= bytes.size();
    waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
    const std::size_t whole = waiting_.size() - waiting_.size() % from_.blockAlign();
    samples_.resize(whole / from_.bytesPerSample);
    unpackSamples(from_, Bytes(waiting_).first(whole), samples_);
    turned_.resize(whole);
    packSamples(to_, samples_, turned_);
    file_.write(turned_);
    waiting_.erase(waiting_.begin(), waiting_.begin() + static_cast<std::ptrdiff_t>(whole));
}

void AiffSink::finish() {
    if (pads_) {
        constexpr std::uint8_t zero = 0;
        file_.write({&zero, 1});
    }
}

} // namespace quav::pcm
