#include "audio/shorten/BitWriter.h"

#include "audio/pcm/Bytes.h"

namespace quav::shorten {

void BitWriter::store(std::uint64_t word) {
    if (used_ == buffer_.size()) {
        to_.write(buffer_);
        used_ = 0;
    }
    pcm::storeBigEndian64(&buffer_[used_], word);
    used_ += sizeof word;
}

void BitWriter::finish() {
    put(1, 1);
    if (free_ % 32 != 0) {
        put(0, free_ % 32);
    }
    if (free_ == 32) {
        store(window_ << 32);
        used_ -= 4;
    }
    to_.write(std::span(buffer_).first(used_));
}

} // namespace quav::shorten
