#pragma once

#include "app/ListFacts.h"
#include "app/OptionValues.h"

#include <QObject>

#include <set>

namespace quav {

class Settings;

/// Each option as the settings have it, or as it is at first.
OptionValues storedValues(const OptionTable& table, const Settings& settings);

/// The options of a tab as they stand: loaded from the settings, and stored there when the user
/// changes them.
class TabOptions : public QObject {
    Q_OBJECT

public:
    TabOptions(const OptionTable& table, Settings& settings, QObject* parent = nullptr);

    const OptionTable& table() const { return values_.table(); }
    const OptionValues& values() const { return values_; }

    template <typename T>
    T operator[](const Option<T>& option) const {
        return values_[option];
    }

    /// What the user chose. Reaches the settings where the option has one.
    template <typename T>
    void set(const Option<T>& option, T value) {
        OptionValues changed = values_;
        changed.set(option, value);
        choose(option.info(), changed.value(option.info()));
    }
    void choose(const OptionInfo& option, const QVariant& value);

    /// Takes over all values, as of a preset. They are not stored, so that what the settings say
    /// can be had back.
    void chooseAll(const OptionValues& values);

    /// Lies over the stored value until the end of the program, and is not stored. The error says
    /// what the option takes.
    tl::expected<void, QString> setForThisRun(const OptionInfo& option, const QString& text);
    template <typename T>
    void setForThisRun(const Option<T>& option, T value) {
        values_.set(option, value);
        onlyForThisRun_.insert(option.info().index);
        Q_EMIT changed();
    }

    /// Whether an option means anything, given the others and the list.
    bool applies(const OptionInfo& option) const;

    const ListFacts& facts() const { return facts_; }
    void setFacts(const ListFacts& facts);

Q_SIGNALS:
    void changed();

private:
    void store(const OptionInfo& option);

    Settings& settings_;
    OptionValues values_;
    ListFacts facts_;
    std::set<std::size_t> onlyForThisRun_; ///< by the options' places in their table
};

} // namespace quav
