#pragma once

#include "checksums/TestLog.h"
#include "engine/QUAVAsyncNSTask.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace quav {

/// Tests one compressed file with its own codec's decoder, which writes no output. What the four
/// codecs share: the file's name as title and status line, a place in a common report, and the
/// verdict that the tool's exit status gives.
class VerifyToolTask : public QUAVAsyncNSTask {
    Q_DECLARE_TR_FUNCTIONS(VerifyToolTask)

public:
    /// The tested file.
    QString source() const override { return path_; }

    void startTask() override;

protected:
    /// `path` is the argument that names the file. The caller enters the task into the results.
    VerifyToolTask(const std::shared_ptr<QUAVTaskResults>& results, TaskHost& queue,
                   const QString& launchPath, const QStringList& arguments, const QString& path);

    void cleanup() override;

    /// What is wrong with the file although the tool has found nothing; empty when nothing is.
    virtual QString hiddenDamage() const;

    /// What there is to say of the file although it is intact, for its verdict; empty: nothing.
    virtual QString noteIntact();

    /// The tested file, with its path.
    const QString& path() const { return path_; }

    /// The last component of the tested file.
    const QString& fileName() const { return fileName_; }

    /// Shows how far the tool is, unless the piece did not say.
    void showPercent(std::optional<double> percent);

    /// The tool's last words, for the verdict.
    void noteWords(const QString& words);

private:
    [[noreturn]] void refuse(const QString& reason);

    QString path_;
    QString fileName_;
    QString tool_;
    QString lastWords_;
};

/// `flac -t`.
class VerifyFlacTask : public VerifyToolTask {
    Q_DECLARE_TR_FUNCTIONS(VerifyFlacTask)

public:
    VerifyFlacTask(const std::shared_ptr<QUAVTaskResults>& results, TaskHost& queue,
                   const QString& launchPath, const QStringList& arguments);

    void startTask() override;
    void stopTask() override;

protected:
    void processTaskOutput(const QString& text) override;
    void cleanup() override;
    QString hiddenDamage() const override;
    QString noteIntact() override;

private:
    QString canceledWords() const;
    void takeWords(const QString& words);
    void takeProgress(const QString& words);

    TestLog singleResult_;
};

/// `mac -v`.
class VerifyApeTask : public VerifyToolTask {
public:
    VerifyApeTask(const std::shared_ptr<QUAVTaskResults>& results, TaskHost& queue,
                  const QString& launchPath, const QStringList& arguments);

protected:
    void processTaskOutput(const QString& text) override;
    void cleanup() override;

private:
    QString singleResult_;
};

/// `wvunpack -v`.
class VerifyWavepackTask : public VerifyToolTask {
public:
    VerifyWavepackTask(const std::shared_ptr<QUAVTaskResults>& results, TaskHost& queue,
                       const QString& launchPath, const QStringList& arguments);

protected:
    void processTaskOutput(const QString& text) override;
};

/// `ttaenc -t`, which tells of its progress in the same words.
class VerifyTTATask : public VerifyWavepackTask {
public:
    using VerifyWavepackTask::VerifyWavepackTask;
};

} // namespace quav
