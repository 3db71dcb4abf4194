#include "platform/NaturalOrder.h"

#include <unicode/coll.h>
#include <unicode/locid.h>

#include <cstring>
#include <string_view>

namespace quav {

struct NaturalOrder::Collator {
    std::unique_ptr<icu::Collator> icu;
};

namespace {

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
    QByteArray key;
    if (collator_->icu) {
        const char16_t* characters = reinterpret_cast<const char16_t*>(text.utf16());
        const icu::UnicodeString view(false, characters, static_cast<int32_t>(text.size()));
        key.resize(text.size() * 3 + 16);
        const auto bytes = [&key] { return reinterpret_cast<uint8_t*>(key.data()); };
        int32_t length =
            collator_->icu->getSortKey(view, bytes(), static_cast<int32_t>(key.size()));
        if (length > key.size()) {
            key.resize(length);
            length = collator_->icu->getSortKey(view, bytes(), length);
        }
        key.resize(length); // a zero byte ends the key, so a tie is broken by what follows it
    }
    return key + text.toUtf8();
}

} // namespace quav
