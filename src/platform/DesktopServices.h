#pragma once

#include "platform/Interface.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

namespace quav {

/// What the desktop offers to a program. Each service may be absent, and an absent one does
/// nothing, quietly.
class DesktopServices : public Interface {
public:
    /// Shows a notification; the body is no markup and has no names in it. The answer comes later,
    /// on the main thread: whether the desktop shows it.
    using NotifyAnswer = std::function<void(bool shown)>;
    virtual void notify(const QString& title, const QString& body, NotifyAnswer answer) = 0;

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

    /// Keeps the system from suspending itself until `allowSuspend`. `reason` may be shown to the
    /// user.
    virtual void preventSuspend(const QString& reason) = 0;
    virtual void allowSuspend() = 0;

    /// Moves a file to the trash; false when it could not be moved. May be called on any thread.
    virtual bool moveToTrash(const QString& path) = 0;
};

/// No desktop at all, as for a program on a terminal; only the trash is there.
class NoDesktop : public DesktopServices {
public:
    void notify(const QString& title, const QString& body, NotifyAnswer answer) override;
    void requestAttention() override;
    void setBadge(std::optional<int> count) override;
    void preventSleep(const QString& reason, SleepAnswer answer) override;
    void allowSleep(uint32_t assertion) override;
    void preventSuspend(const QString& reason) override;
    void allowSuspend() override;
    bool moveToTrash(const QString& path) override;
};

} // namespace quav
