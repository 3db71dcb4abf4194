#pragma once

#include <QTest>

namespace quav::test {

/// How long a test waits, in milliseconds, for what has to happen: far longer than it ever takes,
/// since a machine with much else to do may make it take twenty times as long.
constexpr int patience = 60'000;

} // namespace quav::test

// Qt's own limit, five seconds, is none that a loaded machine keeps.
#undef QTRY_VERIFY
#define QTRY_VERIFY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, quav::test::patience)
#undef QTRY_VERIFY2
#define QTRY_VERIFY2(condition, message)                                                           \
    QTRY_VERIFY2_WITH_TIMEOUT(condition, message, quav::test::patience)
#undef QTRY_COMPARE
#define QTRY_COMPARE(actual, expected)                                                             \
    QTRY_COMPARE_WITH_TIMEOUT(actual, expected, quav::test::patience)
