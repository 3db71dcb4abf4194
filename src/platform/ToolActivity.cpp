#include "platform/ToolActivity.h"

#include <algorithm>
#include <charconv>
#include <dirent.h>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

namespace quav {

namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

/// The process of an entry of /proc; 0 for what is none.
pid_t processOf(std::string_view name) {
    pid_t process = 0;
    const char* end = name.data() + name.size();
    const auto read = std::from_chars(name.data(), end, process);
    return read.ptr == end ? process : 0;
}

std::string procFile(pid_t process, const char* name) {
    return "/proc/" + std::to_string(process) + '/' + name;
}

/// 0 for a process that has gone.
pid_t groupOf(pid_t process) {
    std::ifstream file(procFile(process, "stat"));
    std::string line;
    std::getline(file, line);
    // The second field is a name in brackets, which may hold blanks and brackets itself.
    const size_t name = line.rfind(')');
    if (name == std::string::npos) {
        return 0;
    }
    std::istringstream fields(line.substr(name + 1));
    std::string state;
    pid_t parent = 0;
    pid_t group = 0;
    fields >> state >> parent >> group;
    return group;
}

struct Bytes {
    std::uint64_t read = 0;
    std::uint64_t written = 0;
};

std::optional<Bytes> bytesOf(pid_t process) {
    std::ifstream file(procFile(process, "io"));
    std::optional<Bytes> bytes;
    std::string key;
    std::uint64_t count = 0;
    while (file >> key >> count) {
        if (key == "rchar:") {
            bytes.emplace().read = count;
        } else if (key == "wchar:" && bytes) {
            bytes->written = count;
        }
    }
    return bytes;
}

} // namespace

std::unordered_map<pid_t, std::uint64_t> bytesMoved(const std::vector<pid_t>& groups) {
    std::unordered_map<pid_t, std::uint64_t> moved;
    const std::unique_ptr<DIR, CloseDirectory> directory(opendir("/proc"));
    while (const dirent* entry = directory ? readdir(directory.get()) : nullptr) {
        const pid_t process = processOf(entry->d_name);
        const pid_t group = process > 0 ? groupOf(process) : 0;
        if (group > 0 && std::find(groups.begin(), groups.end(), group) != groups.end()) {
            if (const auto bytes = bytesOf(process)) {
                moved[group] += bytes->read + bytes->written;
            }
        }
    }
    return moved;
}

std::uint64_t bytesWrittenBy(pid_t process) {
    return bytesOf(process).value_or(Bytes()).written;
}

} // namespace quav
