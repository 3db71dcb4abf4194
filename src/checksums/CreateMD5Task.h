#pragma once

#include "engine/BackgroundTask.h"
#include "engine/Verdict.h"

#include <QCoreApplication>
#include <QStringList>

namespace quav {

/// Writes an MD5 file over files of any type.
class CreateMD5Task : public BackgroundTask {
    Q_DECLARE_TR_FUNCTIONS(CreateMD5Task)

public:
    /// `outputPath` is the MD5 file.
    CreateMD5Task(TaskHost& queue, const QStringList& files, const QString& outputPath);

    static bool areAllSameDirectory(const QStringList& paths);

    /// The name of a file in a list that stands in this folder, when the files of the list do not
    /// all lie in one: below the folder the rest of the path, with its slash in front; elsewhere
    /// the last component.
    static QString nameFromFolder(const QString& file, const QString& folder);

protected:
    void doStartTask() override;
    void beforeEnd() override;

private:
    void doCreateMd5();
    void warnOfLists();
    bool isOutput(const QString& file) const;

    QStringList fileNames_;
    QString outputPath_;
};

} // namespace quav
