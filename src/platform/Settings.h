#pragma once

#include <QLatin1StringView>
#include <QObject>
#include <QSettings>
#include <QString>
#include <QVariant>

#include <tl/expected.hpp>

#include <mutex>
#include <span>

namespace quav {

enum class SettingType {
    Integer,
    Switch, ///< an integer of which only 0 and not 0 count; it reads as 0 or 1
    Boolean,
    Text
};

/// One setting: its name in the file, its type, what it is until the user changes it, what it is
/// when nobody can tell what the file means by it, and the least and greatest value of an integer.
struct SettingDefinition {
    QLatin1StringView key;
    SettingType type;
    QVariant defaultValue;
    QVariant inDoubt;
    int least = 0;
    int greatest = 0;
};

/// The keys that code reads or writes by name; the table behind `definitions` has them all.
namespace keys {
inline constexpr QLatin1StringView maxThreads{"maxThreads"};
inline constexpr QLatin1StringView encodeFlacLevel{"encodeFlacLevel"};
inline constexpr QLatin1StringView trashOrDelete{"trashOrDelete"};
inline constexpr QLatin1StringView flacVerifyButton{"flacVerifyButton"};
inline constexpr QLatin1StringView flacKeepForeignMetadataButton{"flacKeepForeignMetadataButton"};
inline constexpr QLatin1StringView flacGenerateFFPButton{"flacGenerateFFPButton"};
inline constexpr QLatin1StringView ffpExtension{"ffpExtension"};
inline constexpr QLatin1StringView checksumFileUsesOutputDirName{"checksumFileUsesOutputDirName"};
inline constexpr QLatin1StringView warnOnDelete{"warnOnDelete"};
inline constexpr QLatin1StringView warnOnFilesSkipped{"warnOnFilesSkipped"};
inline constexpr QLatin1StringView encodeToSourceDirectory{"encodeToSourceDirectory"};
inline constexpr QLatin1StringView decodeToSourceDirectory{"decodeToSourceDirectory"};
inline constexpr QLatin1StringView verifyBeforeDelete{"verifyBeforeDelete"};
inline constexpr QLatin1StringView keepModificationTime{"keepModificationTime"};
} // namespace keys

/// The user's settings: an INI file, written only for what the user changed. May be read from any
/// thread.
class Settings : public QObject {
    Q_OBJECT

public:
    /// Opens the file, which need not exist. A damaged file is copied aside as FILE.damaged before
    /// anything is written; `damage` then says so, and what could be read of it counts.
    explicit Settings(const QString& file);

    /// The file of the user who runs the program, below the XDG configuration folder.
    static QString userFile();

    /// The file that these are kept in.
    QString file() const { return store_.fileName(); }

    /// Every setting, in the order in which they are listed to the user.
    static std::span<const SettingDefinition> definitions();

    /// The definition of a key, or nullptr for a key that does not exist.
    static const SettingDefinition* definition(QStringView key);

    int integer(QLatin1StringView key) const;
    bool boolean(QLatin1StringView key) const;
    QString text(QLatin1StringView key) const;

    /// Stores a value given as text. The error names the key and what it takes.
    tl::expected<void, QString> setFromText(const QString& key, const QString& value);

    void set(QLatin1StringView key, const QVariant& value);

    /// Back to the default: the key leaves the file.
    void reset(QLatin1StringView key);

    /// Writes to the file now what was changed; false when that failed. Without it changes are
    /// written soon, and at the latest when the object goes.
    bool save();

    /// A sentence for the user when the file was damaged, else empty.
    const QString& damage() const { return damage_; }

Q_SIGNALS:
    /// Sent after each change, from the thread that made it.
    void changed(const QString& key);

private:
    QVariant stored(QLatin1StringView key) const;

    QString damage_;
    mutable std::mutex mutex_;
    QSettings store_;
};

} // namespace quav
