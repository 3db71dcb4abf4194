#pragma once

#include <sys/types.h>

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace quav {

/// How many bytes the processes of some process groups have read and written since they began, by
/// group: bytes of files, pipes and devices alike, whether they came from a disk or not. A group
/// that has gone or that the system tells nothing of is left out.
std::unordered_map<pid_t, std::uint64_t> bytesMoved(const std::vector<pid_t>& groups);

/// How many bytes a process has written, with those children that it has waited for; 0 when the
/// system does not tell. A process that has ended may be asked until it is reaped.
std::uint64_t bytesWrittenBy(pid_t process);

} // namespace quav
