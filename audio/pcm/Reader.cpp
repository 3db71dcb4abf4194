#include "audio/pcm/Reader.h"

#include "audio/pcm/Failure.h"
#include "audio/pcm/TemporaryFile.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace quav::pcm {

namespace {

constexpr std::size_t pieceSize = std::size_t{256} << 10;
constexpr std::size_t maximalPieces = 8;

/// The reader does not want the rest.
struct Abandoned {};

class PushedReader final : public Reader {
public:
    explicit PushedReader(Decode decode)
        : decode_(std::move(decode)), thread_([this] { work(); }) {}

    ~PushedReader() override {
        const std::lock_guard lock(mutex_);
        isAbandoned_ = true;
        changed_.notify_all();
    }

    std::size_t read(std::span<std::uint8_t> to) override {
        std::size_t done = 0;
        while (done < to.size()) {
            if (taken_ == piece_.size() && !nextPiece()) {
                break;
            }
            const std::size_t count = std::min(to.size() - done, piece_.size() - taken_);
            std::copy_n(piece_.begin() + static_cast<std::ptrdiff_t>(taken_), count,
                        to.begin() + static_cast<std::ptrdiff_t>(done));
            taken_ += count;
            done += count;
        }
        return done;
    }

    void finish() override {
        while (nextPiece()) {
        }
    }

private:
    // Makes pieces of what the decoder writes, which may be much at once or little.
    class Sink final : public ByteSink {
    public:
        explicit Sink(PushedReader& reader) : reader_(reader) {}
        void write(std::span<const std::uint8_t> bytes) override {
            while (!bytes.empty()) {
                const std::size_t count = std::min(bytes.size(), pieceSize - piece_.size());
                piece_.insert(piece_.end(), bytes.begin(),
                              bytes.begin() + static_cast<std::ptrdiff_t>(count));
                bytes = bytes.subspan(count);
                if (piece_.size() == pieceSize) {
                    pass();
                }
            }
        }
        void pass() {
            if (!piece_.empty()) {
                reader_.add(std::exchange(piece_, {}));
                piece_.reserve(pieceSize);
            }
        }

    private:
        PushedReader& reader_;
        std::vector<std::uint8_t> piece_;
    };

    void work() {
        const SignalsHeld held; // for the thread that makes files
        try {
            Sink sink(*this);
            try {
                decode_(sink);
            } catch (const DigestMismatch&) {
                sink.pass(); // the samples themselves are whole
                throw;
            }
            sink.pass();
        } catch (const Abandoned&) {
            return;
        } catch (...) {
            error_ = std::current_exception();
        }
        const std::lock_guard lock(mutex_);
        isComplete_ = true;
        changed_.notify_all();
    }

    void add(std::vector<std::uint8_t> piece) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return isAbandoned_ || pieces_.size() < maximalPieces; });
        if (isAbandoned_) {
            throw Abandoned();
        }
        pieces_.push_back(std::move(piece));
        changed_.notify_all();
    }

    bool nextPiece() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return isComplete_ || !pieces_.empty(); });
        if (pieces_.empty()) {
            if (error_) {
                std::rethrow_exception(error_);
            }
            return false;
        }
        piece_ = std::move(pieces_.front());
        pieces_.pop_front();
        taken_ = 0;
        changed_.notify_all();
        return true;
    }

    Decode decode_;
    std::vector<std::uint8_t> piece_; // what is being read, up to here
    std::size_t taken_ = 0;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::vector<std::uint8_t>> pieces_;
    bool isComplete_ = false;
    bool isAbandoned_ = false;
    std::exception_ptr error_;
    std::jthread thread_; // the last member: it ends before the others do
};

} // namespace

std::unique_ptr<Reader> readerOf(Decode decode) {
    return std::make_unique<PushedReader>(std::move(decode));
}

} // namespace quav::pcm
