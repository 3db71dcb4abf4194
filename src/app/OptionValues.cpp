#include "app/OptionValues.h"

#include <QCoreApplication>
#include <QJsonValue>

#include <optional>

namespace quav {

namespace {

using Control = OptionInfo::Control;

QJsonValue asJson(const OptionInfo& option, const QVariant& value) {
    return option.control == Control::Choice
               ? QJsonValue(QString::fromLatin1(option.choice(value.toInt())->word))
               : QJsonValue::fromVariant(value);
}

} // namespace

OptionValues::OptionValues(const OptionTable& table) : table_(&table) {
    values_.reserve(table.rows().size());
    for (const OptionInfo& option : table.rows()) {
        values_.push_back(option.initialValue());
    }
}

const QVariant& OptionValues::value(const OptionInfo& option) const {
    Q_ASSERT(&table_->rows()[option.index] == &option);
    return values_[option.index];
}

void OptionValues::setValue(const OptionInfo& option, const QVariant& value) {
    Q_ASSERT(&table_->rows()[option.index] == &option);
    values_[option.index] = value;
}

tl::expected<void, QString> OptionValues::setFromText(const OptionInfo& option,
                                                      const QString& text) {
    const std::optional<QVariant> value = option.fromText(text);
    if (!value) {
        return tl::make_unexpected(
            QCoreApplication::translate("Options", "“%1” takes %2, not “%3”.")
                .arg(QString::fromLatin1(option.key), option.whatItTakes(), text));
    }
    setValue(option, *value);
    return {};
}

QString OptionValues::text(const OptionInfo& option) const {
    return asJson(option, value(option)).toVariant().toString();
}

QJsonObject OptionValues::json() const {
    QJsonObject object;
    for (const OptionInfo& option : table_->rows()) {
        object.insert(QLatin1StringView(option.key), asJson(option, value(option)));
    }
    return object;
}

tl::expected<void, QString> OptionValues::setFromJson(const QJsonObject& object) {
    OptionValues changed = *this;
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        const OptionInfo* option = table_->row(entry.key());
        if (!option) {
            return tl::make_unexpected(
                QCoreApplication::translate("Options", "There is no option “%1”.")
                    .arg(entry.key()));
        }
        const QString text = entry.value().toVariant().toString();
        if (auto set = changed.setFromText(*option, text); !set) {
            return set;
        }
    }
    *this = changed;
    return {};
}

} // namespace quav
