#pragma once

#include <QProcessEnvironment>
#include <QString>

#include <cstdint>

/// How much fits on one command line: the system refuses to start a program with more.
namespace quav {

/// The bytes that are left for the arguments of a program with this environment, whose path is
/// among them.
std::uint64_t argumentRoom(const QString& program, const QProcessEnvironment& environment);

/// The bytes that one argument takes.
std::uint64_t argumentCost(const QString& argument);

} // namespace quav
