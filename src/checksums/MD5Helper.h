#pragma once

#include <QString>

namespace quav {

/// The MD5 of one file, for who wants nothing but the digest.
class MD5Helper {
public:
    /// 32 lower-case hexadecimal digits over the whole file; empty text, which equals no digest,
    /// when it cannot be read or is no regular file. Any thread. See `FileHash` for the reason and
    /// for many files.
    static QString getMD5FromFile(const QString& path);
};

} // namespace quav
