#pragma once

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

namespace quav {

/// What the desktop offers to a program. Each service may be absent, and an absent one does
/// nothing, quietly.
class DesktopServices {
public:
    DesktopServices() = default;
    virtual ~DesktopServices() = default;
    DesktopServices(const DesktopServices&) = delete;
    DesktopServices& operator=(const DesktopServices&) = delete;

    /// Shows a notification with a title and nothing else; false when the desktop has none.
    virtual bool notify(const QString& title) = 0;

    /// Asks for the user's attention, once and without hurry.
    virtual void requestAttention() = 0;

    /// Shows a number on the application's icon; no number removes the badge.
    virtual void setBadge(std::optional<int> count) = 0;

    /// Asks the desktop to keep the display awake. The answer comes later, on the main thread: a
    /// handle for `allowSleep`, or nothing when refused.
    using SleepAnswer = std::function<void(std::optional<uint32_t> assertion)>;
    virtual void preventSleep(const QString& reason, SleepAnswer answer) = 0;

    /// Gives a handle back; a handle that was given back before does no harm.
    virtual void allowSleep(uint32_t assertion) = 0;

    /// Moves a file to the trash; false when it could not be moved. May be called on any thread.
    virtual bool moveToTrash(const QString& path) = 0;
};

/// No desktop at all, as for a program on a terminal; only the trash is there.
class NoDesktop : public DesktopServices {
public:
    bool notify(const QString& title) override;
    void requestAttention() override;
    void setBadge(std::optional<int> count) override;
    void preventSleep(const QString& reason, SleepAnswer answer) override;
    void allowSleep(uint32_t assertion) override;
    bool moveToTrash(const QString& path) override;
};

} // namespace quav
