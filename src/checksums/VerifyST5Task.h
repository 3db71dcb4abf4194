#pragma once

#include "checksums/VerifyListTask.h"

namespace quav {

/// Checks the files that an ST5 file names, with `shntool hash`.
class VerifyST5Task : public VerifyListTask {
    Q_DECLARE_TR_FUNCTIONS(VerifyST5Task)

public:
    VerifyST5Task(TaskHost& queue, const QString& fileName,
                  const std::shared_ptr<QUAVTaskResults>& results);

protected:
    void check(const checksumlist::List& list) override;

private:
    /// What shntool says of one file.
    struct Hashed {
        QString result;  ///< the digest with the marker behind it, or else the last warning
        QString warning; ///< the last one, also beside a digest
        bool isDamaged = false;
    };

    void doCreateST5(const checksumlist::List& list);
    Hashed st5(const QString& path);
    QString processTaskOutput(const QString& text);
    void take(const Line& line, const QString& path, const Hashed& computed);
};

} // namespace quav
