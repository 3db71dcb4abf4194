#pragma once

#include "app/BaseTab.h"
#include "checksums/ChecksumList.h"
#include "engine/Verdict.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <memory>
#include <vector>

namespace quav {

class CreateMD5Task;
class CreateST5Task;
class QUAVTask;
class QUAVTaskQueue;
class QUAVTaskResults;
class VerifyListTask;

/// Tests compressed files, writes checksum files and verifies them.
class ChecksumTab : public BaseTab {
    Q_OBJECT

public:
    explicit ChecksumTab(const Services& services);

    CommandOutcome executeCommand() override;

    /// Whether the chosen command does anything with a file. May read its beginning.
    bool hasUseFor(const QString& path) const;

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
    /// A fingerprint file was made. The verdicts are only of files that gave no fingerprint; the
    /// warnings are sentences, and so are the failures, of which there are none when every file has
    /// an entry.
    void fingerprintsWritten(const QString& path, const quav::Verdicts& verdicts,
                             const QStringList& warnings, const QStringList& failures);

private:
    checksumlist::Reading reading() const;

    using Tasks = std::vector<std::shared_ptr<QUAVTask>>;

    /// Why there is no path for a checksum file.
    enum class NoPath { DialogCancelled, AnsweredNo };

    struct Fingerprints;

    CommandOutcome test();
    CommandOutcome create();
    CommandOutcome createFFP(const QStringList& files, const QString& path);
    CommandOutcome verify();
    CommandOutcome queueOne(const std::shared_ptr<QUAVTask>& task);
    CommandOutcome queueSet(const Tasks& tasks, const std::shared_ptr<QUAVTaskResults>& results);
    std::shared_ptr<VerifyListTask>
    verificationOf(const QString& path, ChecksumKind kind,
                   const std::shared_ptr<QUAVTaskResults>& results) const;
    tl::expected<QString, NoPath> choosePath(const QStringList& files, ChecksumKind kind,
                                             bool sourceSave);
    static std::shared_ptr<CreateMD5Task> md5Task(const QStringList& files, QUAVTaskQueue& queue,
                                                  const QString& path);
    std::shared_ptr<CreateST5Task> st5Task(const QStringList& files, QUAVTaskQueue& queue,
                                           const QString& path) const;
    bool hasTools(const QStringList& names);
    bool hasAnyTools(const QSet<QStringList>& sets);
    CommandOutcome writeFingerprints(Fingerprints& read, const QString& path);
};

} // namespace quav
