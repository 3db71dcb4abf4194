#pragma once

#include "platform/DesktopServices.h"

#include <QStringList>

#include <vector>

namespace quav::test {

/// A desktop that keeps what it was asked for.
class FakeDesktop : public NoDesktop {
public:
    bool offersNotifications = true;
    bool grantsSleep = true;
    bool trashWorks = true;

    QStringList notifications;
    QStringList bodies;
    bool suspendPrevented = false;
    int attentionRequests = 0;
    std::optional<int> badge;
    int sleepRequests = 0;
    std::vector<uint32_t> givenBack;

    void notify(const QString& title, const QString& body, NotifyAnswer answer) override {
        notifications << title;
        bodies << body;
        answer(offersNotifications);
    }
    void preventSuspend(const QString& /*reason*/) override { suspendPrevented = true; }
    void allowSuspend() override { suspendPrevented = false; }
    void requestAttention() override { ++attentionRequests; }
    void setBadge(std::optional<int> count) override { badge = count; }
    void preventSleep(const QString& /*reason*/, SleepAnswer answer) override {
        ++sleepRequests;
        answer(grantsSleep ? std::optional<uint32_t>(77) : std::nullopt);
    }
    bool moveToTrash(const QString& path) override {
        return trashWorks && NoDesktop::moveToTrash(path);
    }
    void allowSleep(uint32_t assertion) override { givenBack.push_back(assertion); }
};

} // namespace quav::test
