#include "platform/ArgumentRoom.h"

#include <QFile>
#include <QStringList>

#include <algorithm>
#include <unistd.h>

namespace quav {

std::uint64_t argumentRoom(const QString& program, const QProcessEnvironment& environment) {
    // A quarter of the stack, as its limit is now; but never more than this, which Linux tells
    // nobody.
    constexpr std::uint64_t most = std::uint64_t(6) * 1024 * 1024;
    constexpr std::uint64_t spare = 8192; // what the system itself puts beside them
    const auto limit = static_cast<std::uint64_t>(std::max(0L, ::sysconf(_SC_ARG_MAX)));
    std::uint64_t taken = spare + 2 * argumentCost(program);
    for (const QString& variable : environment.toStringList()) {
        taken += argumentCost(variable);
    }
    const std::uint64_t whole = std::min(limit, most);
    return whole - std::min(whole, taken);
}

std::uint64_t argumentCost(const QString& argument) {
    return static_cast<std::uint64_t>(QFile::encodeName(argument).size()) + 1 + sizeof(char*);
}

} // namespace quav
