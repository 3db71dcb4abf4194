#pragma once

#include "platform/FileDescriptor.h"

#include <QString>

#include <sys/types.h>

namespace quav {

/// Lets us read and write a file of our own for as long as the object lives, even a write-protected
/// one; then the file has its permissions back, also when it has been renamed meanwhile. A link is
/// not followed. What we may not change stays as it is.
class OwnerAccess {
public:
    explicit OwnerAccess(const QString& path);
    OwnerAccess(const OwnerAccess&) = delete;
    OwnerAccess& operator=(const OwnerAccess&) = delete;
    ~OwnerAccess();

private:
    bool change(mode_t mode) const;

    FileDescriptor file_; ///< none when there is nothing to give back
    mode_t mode_ = 0;
};

} // namespace quav
