#pragma once

#include "platform/FileIdentity.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <chrono>
#include <optional>

namespace quav {

/// What was read of a file without decoding it.
struct FileFacts {
    /// Which file it was read of; none when there was none.
    std::optional<FileIdentity> identity;
    QString format;                      ///< "flac", "wav", ...; empty for what is no audio
    std::chrono::milliseconds length{0}; ///< 0: not told
    int sampleRate = 0;                  ///< blocks per second; 0: not told
    int bits = 0;                        ///< of a sample; 0: not told, as of lossy formats
    int channels = 0;
    int misalignment = 0; ///< bytes behind the last whole sector, of CD audio
    QString trouble;      ///< why it cannot be used, in a sentence; empty when it can

    qint64 size() const { return identity ? identity->size : 0; }
    bool operator==(const FileFacts&) const = default;
};

/// What is known of the files in a tab's list without having asked what becomes of them. A cheap
/// value: copies share what they hold.
class ListFacts {
public:
    /// Of a list that may hold anything, for whoever asks before there is one.
    static ListFacts ofAnyList() { return ListFacts(true); }

    ListFacts() = default;

    /// Whether a file with this format word ("FLAC") is in the list.
    bool hasFormat(const QString& word) const { return isAny_ || formats_.contains(word); }
    void addFormat(const QString& word) { formats_.insert(word); }
    void removeFormat(const QString& word) { formats_.remove(word); }

    /// The facts of a file, as they were when it was last looked at; none when it was not yet.
    const FileFacts* of(const QString& path) const {
        const auto found = files_.constFind(path);
        return found == files_.constEnd() ? nullptr : &*found;
    }
    void set(const QString& path, FileFacts facts) { files_[path] = std::move(facts); }
    /// Takes over the facts of files from another one.
    void setFilesOf(const ListFacts& other) { files_ = other.files_; }
    /// Forgets files that are not among these.
    void keepOnly(const QSet<QString>& paths) {
        files_.removeIf([&](const auto& file) { return !paths.contains(file.key()); });
    }

    bool operator==(const ListFacts&) const = default;

private:
    explicit ListFacts(bool isAny) : isAny_(isAny) {}

    QSet<QString> formats_;
    QHash<QString, FileFacts> files_;
    bool isAny_ = false;
};

} // namespace quav
