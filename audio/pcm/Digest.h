#pragma once

#include <array>
#include <cstdint>
#include <md5.h>
#include <sha1.h>
#include <span>

namespace quav::pcm {

using Md5Digest = std::array<std::uint8_t, MD5_DIGEST_LENGTH>;
using Sha1Digest = std::array<std::uint8_t, SHA1_DIGEST_LENGTH>;

/// An MD5 digest of bytes that come piece by piece.
class Md5 {
public:
    Md5() { ::MD5Init(&context_); }

    void add(std::span<const std::uint8_t> bytes) {
        ::MD5Update(&context_, bytes.data(), bytes.size());
    }

    /// To be called once, at the end.
    Md5Digest result() {
        Md5Digest digest{};
        ::MD5Final(digest.data(), &context_);
        return digest;
    }

private:
    MD5_CTX context_{};
};

/// The same for SHA-1.
class Sha1 {
public:
    Sha1() { ::SHA1Init(&context_); }

    void add(std::span<const std::uint8_t> bytes) {
        ::SHA1Update(&context_, bytes.data(), bytes.size());
    }

    Sha1Digest result() {
        Sha1Digest digest{};
        ::SHA1Final(digest.data(), &context_);
        return digest;
    }

private:
    SHA1_CTX context_{};
};

} // namespace quav::pcm
