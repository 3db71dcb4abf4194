#pragma once

#include <unistd.h>
#include <utility>

namespace quav {

/// Owns a file descriptor of the system, or none.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    ~FileDescriptor() { reset(); }
    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, none)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ != none; }

    void reset() {
        if (descriptor_ != none) {
            close(std::exchange(descriptor_, none));
        }
    }

private:
    static constexpr int none = -1;
    int descriptor_ = none;
};

} // namespace quav
