#pragma once

#include <QTest>

namespace quav::test {

/// The columns of a test's table.
template <typename... Types>
void columns(const auto*... names) {
    (QTest::addColumn<Types>(names), ...);
}

/// One row of a test's table: its name, then a value for each column.
template <typename... Values>
void row(const char* name, const Values&... values) {
    QTestData& data = QTest::newRow(name);
    (data << ... << values);
}

} // namespace quav::test
