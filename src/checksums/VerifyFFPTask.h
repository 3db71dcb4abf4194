#pragma once

#include "checksums/TestLog.h"
#include "checksums/VerifyListTask.h"

#include <QStringList>

#include <tl/expected.hpp>

namespace quav {

/// Checks the FLAC files that a fingerprint file names: first their fingerprints, then, for those
/// that match, the audio with `flac -t`.
class VerifyFFPTask : public VerifyListTask {
    Q_DECLARE_TR_FUNCTIONS(VerifyFFPTask)

public:
    VerifyFFPTask(TaskHost& queue, const QString& fileName,
                  const std::shared_ptr<QUAVTaskResults>& results);

protected:
    void check(const checksumlist::List& list) override;
    void listIsEmpty() override;

private:
    /// What metaflac has for a file, or why it came to nothing.
    using Entry = tl::expected<QString, QString>;

    /// What `flac -t` came to for one file.
    struct Tested {
        TestLog log;    ///< what the report has of it
        QString damage; ///< what is wrong with it; empty when nothing is
        bool isJudged = true;
    };

    QStringList doVerifyFPP(const checksumlist::List& list);
    Entry fingerprint(const QString& path);
    bool take(const Line& line, const QString& path, const Entry& read);
    void verifyFlacFilesSync(const QStringList& paths);
    Tested test(const QString& path);
    QString processFlacFileOutput(const QString& piece, const QString& file);
    static void noteDamage(Verdict& verdict, const Tested& tested);
};

} // namespace quav
