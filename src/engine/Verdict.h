#pragma once

#include <QCoreApplication>
#include <QString>

#include <memory>
#include <vector>

namespace quav {

/// What a check found out about one file, beside the words that a report has for it.
struct Verdict {
    enum class Kind : unsigned char {
        Ok,
        Failed,     ///< it is there and is not what it should be
        Missing,    ///< there is no such file
        Unreadable, ///< it could not be judged: not readable, or no entry of a list at all
    };

    QString list; ///< the file that names it; empty when nothing does
    QString file; ///< its path, or the line that names none
    Kind kind = Kind::Ok;
    QString expected; ///< what it was compared with; empty when with nothing
    QString found;
    QString note;              ///< a remark for the user, in one line
    bool onlySpelling = false; ///< it failed, and would match with its entry spelled otherwise
};

using Verdicts = std::vector<Verdict>;

/// Any number of them that cost nothing to pass on; never null.
using SharedVerdicts = std::shared_ptr<const Verdicts>;
SharedVerdicts noVerdicts();

/// How many of each kind.
class VerdictCounts {
    Q_DECLARE_TR_FUNCTIONS(VerdictCounts)

public:
    VerdictCounts() = default;
    explicit VerdictCounts(const Verdicts& verdicts);

    void add(const VerdictCounts& others);

    bool allOk() const { return failed + missing + unreadable == 0; }

    /// One line: how many are ok, failed, missing, and could not be read.
    QString text() const;

    int ok = 0;
    int failed = 0;
    int missing = 0;
    int unreadable = 0;
};

/// The kind in a word that programs read: "ok", "failed", "missing", "unreadable".
QString word(Verdict::Kind kind);

/// One line for people: the file, what is wrong with it, and why as far as it is known.
QString sentence(const Verdict& verdict);

} // namespace quav
