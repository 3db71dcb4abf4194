#pragma once

#include "checksums/FileHash.h"
#include "checksums/VerifyListTask.h"

namespace quav {

/// Checks the files that an MD5 file names.
class VerifyMD5Task : public VerifyListTask {
public:
    VerifyMD5Task(TaskHost& queue, const QString& fileName,
                  const std::shared_ptr<QUAVTaskResults>& results);

protected:
    void check(const checksumlist::List& list) override;

private:
    void doCreateMD5(const checksumlist::List& list);
    void take(const Line& line, const QString& path, const FileHash::Digest& digest);
};

} // namespace quav
