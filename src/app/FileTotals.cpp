#include "app/FileTotals.h"

#include "platform/AudioProbe.h"

#include <QFile>
#include <QFileInfo>

#include <system_error>

namespace quav {

namespace {

constexpr std::chrono::milliseconds announceInterval{250};

} // namespace

FileTotals::FileTotals(QObject* parent) : QObject(parent), worker_(mainThread_) {}

FileTotals::~FileTotals() {
    stop_ = true;
}

void FileTotals::count(const QStringList& files) {
    stop_ = true;
    worker_.wait(); // it looks after every file
    stop_ = false;
    ++generation_;
    bytes_ = 0;
    length_ = {};
    worker_.run([this, files, generation = generation_] { readAll(files, generation); }, [] {});
}

void FileTotals::readAll(const QStringList& files, unsigned generation) {
    Facts totals;
    auto announced = std::chrono::steady_clock::now();
    for (const QString& file : files) {
        if (stop_) {
            return;
        }
        const Facts facts = factsOf(file);
        totals.bytes += facts.bytes;
        totals.length += facts.length;
        const auto now = std::chrono::steady_clock::now();
        if (now - announced >= announceInterval) {
            announce(totals, generation);
            announced = now;
        }
    }
    announce(totals, generation);
}

FileTotals::Facts FileTotals::factsOf(const QString& file) {
    std::error_code missing; // a file that is gone has no size and no length either
    const auto modified =
        std::filesystem::last_write_time(QFile::encodeName(file).constData(), missing);
    const auto known = known_.constFind(file);
    if (known != known_.constEnd() && known->modified == modified) {
        return *known;
    }
    return *known_.insert(file, {QFileInfo(file).size(), audioLength(file), modified});
}

void FileTotals::announce(const Facts& totals, unsigned generation) {
    mainThread_.post([this, totals, generation] {
        // What an earlier count had to say may still be on its way.
        if (generation == generation_) {
            bytes_ = totals.bytes;
            length_ = totals.length;
            Q_EMIT changed();
        }
    });
}

} // namespace quav
