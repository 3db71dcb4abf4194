#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <span>

namespace quav {

/// A command-line tool that the program drives.
struct ToolDefinition {
    const char* name;            ///< the name in the tools folder
    const char* program;         ///< what it is called in the package
    const char* package;         ///< the Debian package that has it
    const char* versionArgument; ///< makes it print its version and end
};

/// The folder that holds the command-line tools, or links to them.
class ToolsFolder {
public:
    explicit ToolsFolder(QString folder);

    /// QUAV_TOOLS_DIR if set; else the folder of the installation or of the build tree that the
    /// running program belongs to.
    static QString standardFolder();

    static std::span<const ToolDefinition> definitions();

    const QString& path() const { return folder_; }

    /// The full path of a tool, whether it is there or not.
    QString tool(const QString& name) const;

    bool has(const QString& name) const;

    /// A sentence for the user about a tool that is not there: its name and what brings it.
    QString whatIsMissing(const QString& name) const;

    /// Such sentences about those of the tools that are not there, each tool once.
    QStringList whatIsMissing(QStringList names) const;

    /// The environment in which tools run: our own, with the tools folder at the end of PATH, a
    /// UTF-8 locale, and without the variables that change what tools do behind our back.
    /// One for all of them, which thousands of tasks share.
    const QProcessEnvironment& environment() const { return environment_; }

private:
    QString folder_;
    QProcessEnvironment environment_;
};

} // namespace quav
