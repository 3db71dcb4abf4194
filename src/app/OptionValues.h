#pragma once

#include "app/Option.h"

#include <QJsonObject>
#include <QString>
#include <QVariant>

#include <tl/expected.hpp>

#include <vector>

namespace quav {

/// A value for every option of a table: what a run uses, what a preset holds.
class OptionValues {
public:
    /// Each option as it is at first. The table has to outlive the values.
    explicit OptionValues(const OptionTable& table);

    const OptionTable& table() const { return *table_; }

    template <typename T>
    T operator[](const Option<T>& option) const {
        const QVariant& held = value(option.info());
        if constexpr (std::is_enum_v<T>) {
            return static_cast<T>(held.toInt());
        } else {
            return held.value<T>();
        }
    }

    template <typename T>
    void set(const Option<T>& option, T value) {
        if constexpr (std::is_enum_v<T>) {
            setValue(option.info(), static_cast<int>(value));
        } else {
            setValue(option.info(), value);
        }
    }

    /// A bool, an int (for a choice its value) or a QString, by the option's control.
    const QVariant& value(const OptionInfo& option) const;
    void setValue(const OptionInfo& option, const QVariant& value);

    /// Sets an option from its text on the command line. The error says what it takes.
    tl::expected<void, QString> setFromText(const OptionInfo& option, const QString& text);

    /// The value as the command line would have it: "true", "5", "wav".
    QString text(const OptionInfo& option) const;

    /// Every option by its key: booleans, numbers, words and texts.
    QJsonObject json() const;

    /// Takes over the options that the object has. The error names the key that does not exist or
    /// whose value does not fit; then nothing was changed.
    tl::expected<void, QString> setFromJson(const QJsonObject& object);

    bool operator==(const OptionValues&) const = default;

private:
    const OptionTable* table_;
    std::vector<QVariant> values_;
};

} // namespace quav
