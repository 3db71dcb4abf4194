#include "app/FileTotals.h"

#include "platform/AudioProbe.h"

#include <QFileInfo>

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
    const QFileInfo info(file);
    const auto known = known_.constFind(file);
    if (known != known_.constEnd() && known->modified == info.lastModified()) {
        return *known;
    }
    return *known_.insert(file, {info.size(), audioLength(file), info.lastModified()});
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
