#pragma once

#include "checksums/Md5Streams.h"
#include "platform/RegularFile.h"

#include <QStringList>

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

namespace quav {

/// Takes files through the MD5 lanes: each lane reads one file to its end and then gets the next.
class FileMd5Lanes {
public:
    struct Result {
        int errorNumber = 0; ///< not 0: the file could not be read, and there is no digest
        std::array<std::uint8_t, 16> digest{};
    };

    FileMd5Lanes(const QStringList& paths, md5lanes::Kernel kernel);

    /// Goes on until the buffers need to be filled again.
    void advance();

    /// The result of the next file in order, once it is there.
    std::optional<Result> takeNext();

    /// Read so far, in bytes.
    std::uint64_t bytesRead() const { return bytesRead_; }

private:
    struct Lane {
        std::optional<RegularFile> file;
        std::size_t slot = 0;     ///< of its buffer
        qsizetype index = 0;      ///< of its file
        std::uint64_t length = 0; ///< read so far, in bytes
        std::uint64_t announced = 0;
        bool isPadded = false;
    };

    void beginFiles();
    void bringLongestToFront();
    std::uint64_t bytesLeft(std::size_t at) const;
    void exchange(std::size_t one, std::size_t other);
    static void readAhead(Lane& lane);
    bool fill(std::size_t at);
    std::size_t pad(Lane& lane, std::size_t filled);
    void finish(std::size_t at, const Result& result);
    std::uint8_t* bufferOf(const Lane& lane);

    const QStringList& paths_;
    md5lanes::Kernel kernel_;
    std::vector<std::uint8_t> buffers_;
    std::array<Lane, md5lanes::lanes> lanes_;
    std::size_t active_ = 0;
    md5lanes::States states_{};
    md5lanes::Streams streams_{};
    std::uint64_t bytesRead_ = 0;
    qsizetype begun_ = 0;
    qsizetype taken_ = 0;
    std::deque<std::optional<Result>> results_; ///< of the files from `taken_` to `begun_`
};

} // namespace quav
