#pragma once

#include "app/PlannedTab.h"
#include "checksums/ChecksumList.h"
#include "engine/TaskReport.h"

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <memory>
#include <optional>

namespace quav {

class CreateMD5Task;
class CreateST5Task;
struct FingerprintText;
class QUAVTask;
class QUAVTaskQueue;
class QUAVTaskResults;
class VerifyListTask;

/// Tests compressed files, writes checksum files and verifies them.
class ChecksumTab : public PlannedTab {
    Q_OBJECT

public:
    explicit ChecksumTab(const Services& services);

    Plan plan(const OptionValues& values, const QString& savePath) const override;
    bool hasUseFor(const QString& path) const override;

    /// The task for an MD5 file over the files; none when the user cancelled.
    std::shared_ptr<CreateMD5Task> createMD5(const QStringList& files, QUAVTaskQueue& queue,
                                             bool sourceSave);
    /// The same for an ST5 file.
    std::shared_ptr<CreateST5Task> createST5(const QStringList& files, QUAVTaskQueue& queue,
                                             bool sourceSave);

    /// One entry of a fingerprint file.
    QString fingerprint(const QString& path) const;

    static bool areAllSameDirectory(const QStringList& paths);

    std::shared_ptr<QUAVTask> verifyFlac(const QString& path,
                                         const std::shared_ptr<QUAVTaskResults>& results,
                                         QUAVTaskQueue& queue) const;
    std::shared_ptr<QUAVTask> verifyAPE(const QString& path,
                                        const std::shared_ptr<QUAVTaskResults>& results,
                                        QUAVTaskQueue& queue) const;
    std::shared_ptr<QUAVTask> verifyWavepack(const QString& path,
                                             const std::shared_ptr<QUAVTaskResults>& results,
                                             QUAVTaskQueue& queue) const;
    std::shared_ptr<QUAVTask> verifyTTA(const QString& path,
                                        const std::shared_ptr<QUAVTaskResults>& results,
                                        QUAVTaskQueue& queue) const;

    /// Ends the writing of a fingerprint file, if one is being written; no file comes of it.
    void stopWriting() { commandWork().cancelAll(); }

Q_SIGNALS:
    /// A fingerprint file was made, which is no task but told of as one. It failed unless every
    /// file has an entry; the verdicts are only of files that gave no fingerprint.
    void fingerprintsWritten(const quav::TaskReport& report);

protected:
    tl::expected<QString, NoDestination> askDestination() override;
    std::shared_ptr<QUAVTask>
    makeTask(const Job& job, const std::shared_ptr<QUAVTaskResults>& batch) const override;
    std::optional<CommandOutcome> executeAtOnce(const Plan& plan) override;

private:
    struct Fingerprints;

    Plan planTests() const;
    Plan planList(ChecksumKind kind, const QStringList& files, const QString& savePath) const;
    Plan planVerification(const OptionValues& values) const;
    std::shared_ptr<VerifyListTask>
    verificationOf(const QString& path, ChecksumKind kind,
                   const std::shared_ptr<QUAVTaskResults>& results) const;
    std::optional<QString> askSavePath(const QStringList& files, ChecksumKind kind);
    std::optional<QString> choosePath(const QStringList& files, ChecksumKind kind, bool sourceSave);
    static std::shared_ptr<CreateMD5Task> md5Task(const QStringList& files, QUAVTaskQueue& queue,
                                                  const QString& path);
    std::shared_ptr<CreateST5Task> st5Task(const QStringList& files, QUAVTaskQueue& queue,
                                           const QString& path) const;
    CommandOutcome createFFP(const QStringList& files, const QString& path);
    static TaskReport reportOn(const FingerprintText& made, const QString& path);
    CommandOutcome writeFingerprints(Fingerprints& read, const QString& path);
};

} // namespace quav
