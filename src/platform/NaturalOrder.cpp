#include "platform/NaturalOrder.h"

#include <unicode/coll.h>
#include <unicode/locid.h>

#include <array>
#include <cstdint>
#include <string_view>

namespace quav {

struct NaturalOrder::Collator {
    std::unique_ptr<icu::Collator> icu;
};

namespace {

constexpr size_t usualKeyBytes = 512;

icu::Locale usersLocale() {
    // The C locale maps to a collation in plain code order, which no file browser shows.
    const icu::Locale locale = icu::Locale::getDefault();
    return std::string_view(locale.getName()) == "en_US_POSIX" ? icu::Locale::getUS() : locale;
}

} // namespace

NaturalOrder::NaturalOrder() : collator_(std::make_unique<Collator>()) {
    UErrorCode status = U_ZERO_ERROR;
    collator_->icu.reset(icu::Collator::createInstance(usersLocale(), status));
    if (collator_->icu) {
        collator_->icu->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    }
}

NaturalOrder::~NaturalOrder() = default;

QByteArray NaturalOrder::sortKey(const QString& text) const {
    if (!collator_->icu) {
        return text.toUtf8();
    }
    const char16_t* characters = reinterpret_cast<const char16_t*>(text.utf16());
    const icu::UnicodeString view(false, characters, static_cast<int32_t>(text.size()));
    std::array<uint8_t, usualKeyBytes> buffer; // NOLINT: filled below, up to the length used
    const int32_t length =
        collator_->icu->getSortKey(view, buffer.data(), static_cast<int32_t>(buffer.size()));
    if (length <= static_cast<int32_t>(buffer.size())) {
        return {reinterpret_cast<const char*>(buffer.data()), length};
    }
    QByteArray key(length, Qt::Uninitialized);
    collator_->icu->getSortKey(view, reinterpret_cast<uint8_t*>(key.data()), length);
    return key;
}

} // namespace quav
