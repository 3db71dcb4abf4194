#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

namespace quav {

/// The order in which a file browser lists names: the user's language, no difference between
/// capitals and small letters unless nothing else differs, runs of digits compared as numbers.
class NaturalOrder {
public:
    NaturalOrder();
    ~NaturalOrder();

    /// A key that sorts byte by byte as the text sorts. Different texts can have equal keys ("Track
    /// 2" and "Track 02"): break the tie by the texts themselves.
    QByteArray sortKey(const QString& text) const;

private:
    struct Collator;
    std::unique_ptr<Collator> collator_;
};

} // namespace quav
