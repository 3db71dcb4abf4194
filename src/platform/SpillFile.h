#pragma once

#include "platform/FileDescriptor.h"

#include <QByteArray>

#include <cstdint>
#include <memory>
#include <mutex>

namespace quav {

/// Room on the disk for what is too long to be kept in memory: one temporary file without a name,
/// so that nothing stays behind however the program ends, and one descriptor whatever the number of
/// those who use it. Made when it is first needed. Any thread.
class SpillFile : public std::enable_shared_from_this<SpillFile> {
public:
    /// Some bytes that were written. Their room is given back when this goes.
    class Part {
    public:
        Part(std::shared_ptr<SpillFile> file, std::int64_t offset, qsizetype size);
        ~Part();
        Part(const Part&) = delete;
        Part& operator=(const Part&) = delete;

        qsizetype size() const { return size_; }

        /// The bytes; fewer of them when the disk does not give them back.
        QByteArray read() const;

    private:
        std::shared_ptr<SpillFile> file_;
        std::int64_t offset_;
        qsizetype size_;
    };

    /// None when they could not be written: the disk is full, say.
    std::shared_ptr<const Part> write(const QByteArray& bytes);

private:
    void release(std::int64_t offset, qsizetype size);

    std::mutex mutex_;
    FileDescriptor descriptor_;
    std::int64_t end_ = 0;
    std::int64_t used_ = 0; ///< bytes in parts that are still there
};

} // namespace quav
