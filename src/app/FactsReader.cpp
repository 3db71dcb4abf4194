#include "app/FactsReader.h"

#include "platform/AudioProbe.h"
#include "platform/SpecialFile.h"

#include <system_error>

namespace quav {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds announceInterval{33};

FileFacts factsOf(const QString& path, const FileIdentity& identity) {
    FileFacts facts;
    facts.identity = identity;
    if (const auto reason = whyNotOpened(path)) {
        facts.trouble = *reason;
        return facts;
    }
    const auto described = describeAudio(path);
    if (!described) {
        facts.trouble = described.error();
        return facts;
    }
    facts.format = described->format;
    facts.length = described->length;
    facts.sampleRate = described->sampleRate;
    facts.bits = described->bits;
    facts.channels = described->channels;
    facts.misalignment = described->misalignment;
    return facts;
}

} // namespace

FactsReader::FactsReader(QObject* parent) : QObject(parent), worker_(mainThread_) {}

FactsReader::~FactsReader() {
    stop_ = true;
}

void FactsReader::start() {
    isStarted_ = true;
    read();
}

void FactsReader::setFiles(const QStringList& files, const QSet<QString>& known) {
    files_ = files;
    listed_ = known;
    facts_.keepOnly(listed_);
    bytes_ = 0;
    length_ = {};
    for (const QString& file : files_) {
        if (const FileFacts* facts = facts_.of(file)) {
            addUp(*facts, 1);
        }
    }
    isStale_ = true;
    read();
}

void FactsReader::read() {
    if (isReading_) {
        stop_ = stop_ || isStale_; // and then begins anew
        return;
    }
    if (!isStarted_ || !isStale_) {
        return;
    }
    isStale_ = false;
    isReading_ = true;
    stop_ = false;
    std::vector<Wanted> wanted;
    wanted.reserve(static_cast<size_t>(files_.size()));
    for (const QString& file : files_) {
        const FileFacts* facts = facts_.of(file);
        wanted.push_back({file, facts ? facts->identity : std::nullopt});
    }
    try {
        worker_.run([this, wanted = std::move(wanted)] { readAll(wanted); }, [this] { end(); });
    } catch (const std::system_error&) {
        isReading_ = false; // no thread to be had; with the next change perhaps
    }
}

void FactsReader::readAll(const std::vector<Wanted>& wanted) {
    Batch batch;
    auto announced = Clock::now();
    for (const Wanted& file : wanted) {
        if (stop_) {
            break;
        }
        const auto identity = FileIdentity::of(file.path);
        if (!identity) {
            FileFacts facts;
            facts.trouble = tr("The file is not there any more.");
            batch.emplace_back(file.path, facts);
        } else if (identity != file.known) {
            batch.emplace_back(file.path, factsOf(file.path, *identity));
        }
        if (!batch.empty() && Clock::now() - announced >= announceInterval) {
            announce(std::exchange(batch, {}));
            announced = Clock::now();
        }
    }
    if (!batch.empty()) {
        announce(std::move(batch));
    }
}

void FactsReader::announce(Batch batch) {
    mainThread_.post([this, batch = std::move(batch)] { take(batch); });
}

void FactsReader::take(const Batch& batch) {
    for (const auto& [path, facts] : batch) {
        if (!listed_.contains(path)) {
            continue;
        }
        if (const FileFacts* before = facts_.of(path)) {
            addUp(*before, -1);
        }
        addUp(facts, 1);
        facts_.set(path, facts);
    }
    Q_EMIT changed();
}

void FactsReader::addUp(const FileFacts& facts, int sign) {
    bytes_ += sign * facts.size();
    length_ += sign * facts.length;
}

void FactsReader::end() {
    isReading_ = false;
    if (isStale_) {
        read();
    } else {
        Q_EMIT finished();
    }
}

} // namespace quav
