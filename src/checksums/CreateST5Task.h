#pragma once

#include "engine/QUAVAsyncNSTaskFileOutputRedirection.h"

#include <QCoreApplication>
#include <QStringList>

namespace quav {

/// Writes an ST5 file: runs `shntool hash` over audio files and keeps the digests that it prints.
class CreateST5Task : public QUAVAsyncNSTaskFileOutputRedirection {
    Q_DECLARE_TR_FUNCTIONS(CreateST5Task)

public:
    /// `fileName` is the ST5 file.
    CreateST5Task(const QString& fileName, TaskHost& queue, const QString& launchPath,
                  const QStringList& arguments);

    /// The arguments that hash the files, named by their last components.
    static QStringList argumentsFor(const QStringList& files);

    void startTask() override;

protected:
    void processTaskOutput(const QString& text) override;
    void cleanup() override;
    void finalCleanup() override;

private:
    void takeLine(const QString& line);
    QString fileIn(const QString& complaint) const;

    QStringList complaints_;
};

} // namespace quav
