#include "checksums/HashRun.h"

#include "engine/ToolOutput.h"
#include "platform/ArgumentRoom.h"
#include "platform/PathNames.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace quav {

namespace {

QStringList argumentsFor(const QStringList& names) {
    QStringList arguments{QStringLiteral("hash"), QStringLiteral("-m")};
    const bool looksLikeOption = std::any_of(
        names.begin(), names.end(), [](const QString& name) { return name.startsWith(u'-'); });
    if (looksLikeOption) {
        // From here on names that begin with a dash are names.
        arguments << QStringLiteral("--");
    }
    return arguments << names;
}

/// What the first piece of a line that ends in this name has of it.
QString shownPart(const QString& name) {
    const auto ends = [](QChar character) {
        return character == u'\n' || character == u'\r' || character == u'\b';
    };
    return name.left(std::find_if(name.begin(), name.end(), ends) - name.begin());
}

} // namespace

std::vector<HashRun> HashRun::over(const QStringList& files, const QString& tool,
                                   const QProcessEnvironment& environment) {
    struct Open {
        std::size_t run;
        std::uint64_t taken; ///< of the command line, in bytes
    };
    const std::uint64_t room = argumentRoom(tool, environment);
    const std::uint64_t fixed = argumentCost(QStringLiteral("hash")) +
                                argumentCost(QStringLiteral("-m")) +
                                argumentCost(QStringLiteral("--"));
    std::vector<HashRun> runs;
    QHash<QString, Open> open; // by folder
    for (qsizetype i = 0; i < files.size(); ++i) {
        const QString folder = folderOf(files[i]);
        const QString name = lastPathComponent(files[i]);
        const std::uint64_t cost = argumentCost(name);
        const auto place = static_cast<std::size_t>(i);
        auto found = open.find(folder);
        const bool fits = found != open.end() && found->taken + cost <= room;
        if (!fits || !runs[found->run].add(name, place)) {
            runs.push_back(HashRun(folder));
            runs.back().add(name, place);
            found = open.insert(folder, {runs.size() - 1, fixed});
        }
        found->taken += cost;
    }
    return runs;
}

bool HashRun::add(const QString& name, std::size_t place) {
    const QString shown = shownPart(name);
    if (indexes_.contains(shown)) {
        return false;
    }
    indexes_.insert(shown, places_.size());
    names_ << name;
    places_.push_back(place);
    hashed_.push_back(false);
    return true;
}

QStringList HashRun::arguments() const {
    return argumentsFor(names_);
}

void HashRun::take(const QString& piece) {
    const bool isWhole = piece.endsWith(u'\n');
    const QString line = isWhole ? piece.chopped(1) : piece;
    lastIsCut_ = false;
    const qsizetype marker = line.indexOf(tooloutput::hashMarker);
    if (marker < 0) {
        if (line.startsWith(tooloutput::hashComplaint) && complaints_.size() < mostLines()) {
            complaints_ << line;
        }
        return;
    }
    const auto index = indexes_.constFind(line.mid(marker + tooloutput::hashMarker.size()));
    const bool isKnown = index != indexes_.constEnd();
    if (isKnown ? hashed_[*index] : static_cast<qsizetype>(entries_.size()) >= mostLines()) {
        return;
    }
    if (isKnown) {
        hashed_[*index] = true;
        entries_.emplace_back(places_[*index], line);
    } else {
        entries_.emplace_back(entries_.empty() ? places_.front() : entries_.back().first, line);
    }
    lastIsCut_ = !isWhole;
}

/// More of a kind than the tool has to say of its files would only fill the memory.
qsizetype HashRun::mostLines() const {
    constexpr qsizetype beside = 100;
    return 2 * names_.size() + beside;
}

void HashRun::fail(const QString& reason) {
    failure_ = reason;
    if (!lastIsCut_) {
        return;
    }
    const std::size_t place = entries_.back().first;
    entries_.pop_back();
    const auto at = std::lower_bound(places_.begin(), places_.end(), place);
    hashed_[static_cast<std::size_t>(at - places_.begin())] = false;
    lastIsCut_ = false;
}

/// Which file a complaint names, at its end in brackets or in front of its words; none when it
/// names none of the run's.
std::optional<std::size_t> HashRun::indexIn(const QString& complaint) const {
    const QString words = complaint.section(tooloutput::hashWarning, 1);
    for (qsizetype at = words.indexOf(u": "); at >= 0; at = words.indexOf(u": ", at + 1)) {
        if (const auto index = indexes_.constFind(words.left(at)); index != indexes_.constEnd()) {
            return *index;
        }
    }
    const qsizetype first = complaint.indexOf(u": [");
    if (!complaint.endsWith(u']') || first < 0) {
        return std::nullopt;
    }
    const auto index = indexes_.constFind(complaint.mid(first + 3, complaint.size() - first - 4));
    return index == indexes_.constEnd() ? std::nullopt : std::optional(*index);
}

/// Whether a complaint is about a file that has its entry.
bool HashRun::isHashed(const QString& complaint) const {
    const auto index = indexIn(complaint);
    return index && hashed_[*index];
}

QStringList HashRun::warnings() const {
    QStringList warnings;
    std::copy_if(complaints_.begin(), complaints_.end(), std::back_inserter(warnings),
                 [this](const QString& complaint) { return isHashed(complaint); });
    return warnings;
}

bool HashRun::isComplete() const {
    return std::find(hashed_.begin(), hashed_.end(), false) == hashed_.end();
}

QStringList HashRun::words() const {
    const auto all = remarks();
    const bool saysWhy = !complaints_.isEmpty() &&
                         std::none_of(all.begin(), all.end(), [this](const Remark& remark) {
                             return remark.words == failure_;
                         });
    return saysWhy || failure_.isEmpty() ? complaints_ : complaints_ + QStringList{failure_};
}

std::vector<HashRun::Remark> HashRun::remarks() const {
    std::vector<Remark> all;
    QHash<std::size_t, std::size_t> places; // of the remarks, by the place of their file's name
    for (const QString& complaint : complaints_) {
        if (isHashed(complaint)) {
            continue;
        }
        const auto index = indexIn(complaint);
        if (!index || !places.contains(*index)) {
            all.push_back({index ? pathOf(*index) : QString(), complaint});
        }
        const std::size_t last = all.size() - 1;
        const std::size_t place = index ? places.value(*index, last) : last;
        if (index) {
            places.insert(*index, place);
        }
        all[place].isDamage = all[place].isDamage || tooloutput::tellsOfDamage(complaint);
    }
    for (std::size_t index = 0; index < hashed_.size(); ++index) {
        if (!hashed_[index] && !places.contains(index)) {
            all.push_back({pathOf(index), failure_.isEmpty()
                                              ? QCoreApplication::translate(
                                                    "HashRun", "shntool gave no digest of it")
                                              : failure_});
        }
    }
    return all;
}

QString HashRun::pathOf(std::size_t index) const {
    return joinPath(folder_, names_[static_cast<qsizetype>(index)]);
}

} // namespace quav
