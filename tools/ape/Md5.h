#pragma once

#include <array>
#include <cstdint>
#include <md5.h>
#include <span>

namespace quav::ape {

using Digest = std::array<std::uint8_t, MD5_DIGEST_LENGTH>;

/// An MD5 digest of bytes that come piece by piece.
class Md5 {
public:
    Md5() { ::MD5Init(&context_); }

    void add(std::span<const std::uint8_t> bytes) {
        ::MD5Update(&context_, bytes.data(), bytes.size());
    }

    /// To be called once, at the end.
    Digest result() {
        Digest digest{};
        ::MD5Final(digest.data(), &context_);
        return digest;
    }

private:
    MD5_CTX context_{};
};

} // namespace quav::ape
