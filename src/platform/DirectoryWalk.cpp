#include "platform/DirectoryWalk.h"

#include <QFile>
#include <QUtf8StringView>

#include <sys/stat.h>

#include <algorithm>
#include <dirent.h>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace quav {

namespace {

using Identity = std::pair<dev_t, ino_t>;

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

class Walker {
public:
    explicit Walker(const std::function<bool(qsizetype)>& goOn) : goOn_(goOn) {}

    void walk(const QByteArray& folder) {
        struct stat info {};
        const std::unique_ptr<DIR, CloseDirectory> directory(opendir(folder.constData()));
        if (!directory || fstat(dirfd(directory.get()), &info) != 0) {
            contents.unreadable << QFile::decodeName(folder);
            return;
        }
        const Identity identity{info.st_dev, info.st_ino};
        if (std::find(way_.begin(), way_.end(), identity) != way_.end()) {
            return;
        }
        way_.push_back(identity);
        const dirent* entry = nullptr;
        while (!isEnded_ && (entry = readdir(directory.get()))) {
            visit(folder, *entry);
        }
        way_.pop_back();
        isEnded_ = isEnded_ || (goOn_ && !goOn_(contents.files.size()));
    }

    DirectoryContents contents;

private:
    void visit(const QByteArray& folder, const dirent& entry) {
        const std::string_view name(entry.d_name);
        if (name == "." || name == "..") {
            return;
        }
        const QByteArray path = (folder.endsWith('/') ? folder : folder + '/') + entry.d_name;
        if (!QUtf8StringView(entry.d_name).isValidUtf8()) {
            contents.undecodable << QString::fromUtf8(path);
            return;
        }
        switch (kindOf(path, entry)) {
        case DT_DIR:
            walk(path);
            break;
        case DT_FIFO:
        case DT_SOCK:
        case DT_CHR:
        case DT_BLK:
            contents.special << QString::fromUtf8(path);
            break;
        default:
            contents.files << QString::fromUtf8(path);
        }
    }

    /// One of the system's DT constants; for a link, of what it leads to.
    static unsigned char kindOf(const QByteArray& path, const dirent& entry) {
        if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) {
            return entry.d_type;
        }
        struct stat info {};
        return stat(path.constData(), &info) == 0 ? static_cast<unsigned char>(IFTODT(info.st_mode))
                                                  : static_cast<unsigned char>(DT_UNKNOWN);
    }

    const std::function<bool(qsizetype)>& goOn_;
    std::vector<Identity> way_;
    bool isEnded_ = false;
};

} // namespace

DirectoryContents walkDirectory(const QString& folder,
                                const std::function<bool(qsizetype files)>& goOn) {
    Walker walker(goOn);
    walker.walk(QFile::encodeName(folder));
    return std::move(walker.contents);
}

} // namespace quav
