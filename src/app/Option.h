#pragma once

#include <QLatin1StringView>
#include <QString>
#include <QStringView>
#include <QVariant>

#include <cstddef>
#include <deque>
#include <initializer_list>
#include <optional>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

namespace quav {

class ListFacts;
class OptionValues;

/// One of the few values that an option can have.
struct OptionChoice {
    int value = 0;                ///< the enumerator, and what the setting stores
    const char* word = nullptr;   ///< on the command line and in JSON: "wav"
    const char* label = nullptr;  ///< in the form, with its mnemonic
    const char* tip = nullptr;    ///< what it does, without a full stop
    const char* passes = nullptr; ///< what the tool gets for it, for people who know the tool
};

/// One option of a tab. The form, the command line's flag with its help, JSON and the presets
/// follow from it. Texts are marked with QT_TRANSLATE_NOOP in the context "Options".
struct OptionInfo {
    enum class Control : unsigned char { Switch, Choice, Slider, Number, Text };
    enum class Otherwise : unsigned char { Disabled, Hidden };

    const char* key; ///< the control's name, and the name in JSON
    Control control;
    const char* group = nullptr;  ///< the box of the form that it stands in
    const char* label = nullptr;  ///< with its mnemonic; nullptr: not in the form
    const char* tip = nullptr;    ///< what it does, without a full stop; also the help of the flag
    const char* passes = nullptr; ///< what the tool gets, for people who know the tool: "flac -V"
    const char* flag = nullptr;   ///< "verify" for --verify; nullptr: not on the command line
    const char* valueName = nullptr; ///< what the help calls the flag's value: "N", "FORMAT"
    bool required = false;           ///< the command line wants it told
    QLatin1StringView setting{}; ///< has default and range; empty: `standard`, for this run only
    QVariant standard{};         ///< the value at first; empty: off, 0, the first choice, no text
    std::span<const OptionChoice> choices{};
    /// Whether the option means anything, given the others and the list; nullptr: always.
    bool (*applies)(const OptionValues& values, const ListFacts& facts) = nullptr;
    Otherwise otherwise = Otherwise::Disabled;

    std::size_t index = 0; ///< its place in its table, which fills this in

    /// The choice of a value or a word; nullptr for one that is none.
    const OptionChoice* choice(int value) const;
    const OptionChoice* choice(QStringView word) const;

    /// The least and the greatest value of a number.
    int least() const;
    int greatest() const;

    /// The value at first, as long as no setting says otherwise.
    QVariant initialValue() const;

    /// The value that a text of the command line stands for; none when the option takes no such.
    std::optional<QVariant> fromText(const QString& text) const;
    /// "a whole number from 0 to 8", in the user's language.
    QString whatItTakes() const;

    /// The texts in the user's language.
    QString groupText() const;
    QString labelText() const;
    QString tipText() const;
    static QString translated(const char* text);
};

/// A preset that comes with the program: what differs in it from the options as they are at first.
struct StandardPreset {
    const char* word = nullptr;  ///< on the command line: "archive"
    const char* title = nullptr; ///< to be translated in the context "Presets"
    std::vector<std::pair<const OptionInfo*, QVariant>> options;
};

/// The options of a tab, in the order in which they are shown. A table is made once and stays where
/// it is; derive from it and make each option a member.
class OptionTable {
public:
    OptionTable(const OptionTable&) = delete;
    OptionTable& operator=(const OptionTable&) = delete;

    const std::deque<OptionInfo>& rows() const { return rows_; }

    /// The row of a key; nullptr for a key that does not exist.
    const OptionInfo* row(QStringView key) const;

    /// The groups in the order of the form.
    const std::vector<const char*>& groups() const { return groups_; }

    /// The presets that come with the program for this tab alone.
    const std::vector<StandardPreset>& presets() const { return presets_; }

protected:
    /// Groups that are named here come first, in this order, whatever the order of their rows.
    explicit OptionTable(std::initializer_list<const char*> groups = {});
    ~OptionTable() = default;

    void comesWith(StandardPreset preset) { presets_.push_back(std::move(preset)); }

private:
    template <typename T>
    friend class Option;
    const OptionInfo& add(OptionInfo info);

    std::deque<OptionInfo> rows_; ///< a deque, since rows are referred to
    std::vector<const char*> groups_;
    std::vector<StandardPreset> presets_;
};

/// The handle by which code asks for an option's value: `values[rows.verify]`.
template <typename T>
class Option {
    static_assert(std::is_same_v<T, bool> || std::is_same_v<T, int> || std::is_same_v<T, QString> ||
                  std::is_enum_v<T>);

public:
    Option(OptionTable& table, OptionInfo info) : info_(table.add(std::move(info))) {}

    const OptionInfo& info() const { return info_; }

    /// The option with a value, for a preset.
    std::pair<const OptionInfo*, QVariant> is(T value) const {
        if constexpr (std::is_enum_v<T>) {
            return {&info_, static_cast<int>(value)};
        } else {
            return {&info_, value};
        }
    }

private:
    const OptionInfo& info_;
};

} // namespace quav
