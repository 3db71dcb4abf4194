#pragma once

#include <QCoreApplication>
#include <QString>

#include <tl/expected.hpp>

namespace quav {

/// The folder that outputs go to. One that is missing is made, but not its parents, and goes again
/// when nothing came of the run.
class OutputFolder {
    Q_DECLARE_TR_FUNCTIONS(OutputFolder)

public:
    /// The error is a sentence for the user.
    static tl::expected<OutputFolder, QString> at(const QString& path);

    const QString& path() const { return path_; }
    bool isMissing() const { return missing_; }

    tl::expected<void, QString> create();

    /// Takes back what `create` did, unless something lies in the folder.
    void discard();

private:
    OutputFolder(QString path, bool missing);

    QString path_;
    bool missing_;
    bool created_ = false;
};

} // namespace quav
