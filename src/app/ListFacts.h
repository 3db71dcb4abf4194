#pragma once

#include <QSet>
#include <QString>

namespace quav {

/// What is known of the files in a tab's list without having asked what becomes of them.
class ListFacts {
public:
    /// Of a list that may hold anything, for whoever asks before there is one.
    static ListFacts ofAnyList() { return ListFacts(true); }

    ListFacts() = default;

    /// Whether a file with this format word ("FLAC") is in the list.
    bool hasFormat(const QString& word) const { return isAny_ || formats_.contains(word); }
    void addFormat(const QString& word) { formats_.insert(word); }

    bool operator==(const ListFacts&) const = default;

private:
    explicit ListFacts(bool isAny) : isAny_(isAny) {}

    QSet<QString> formats_;
    bool isAny_ = false;
};

} // namespace quav
