#include "engine/Verdict.h"

#include "platform/ListText.h"

#include <algorithm>

namespace quav {

SharedVerdicts noVerdicts() {
    static const auto none = std::make_shared<const Verdicts>();
    return none;
}

VerdictCounts::VerdictCounts(const Verdicts& verdicts) {
    const auto count = [&](Verdict::Kind kind) {
        return static_cast<int>(
            std::count_if(verdicts.begin(), verdicts.end(),
                          [&](const Verdict& verdict) { return verdict.kind == kind; }));
    };
    ok = count(Verdict::Kind::Ok);
    failed = count(Verdict::Kind::Failed);
    missing = count(Verdict::Kind::Missing);
    unreadable = count(Verdict::Kind::Unreadable);
}

void VerdictCounts::add(const VerdictCounts& others) {
    ok += others.ok;
    failed += others.failed;
    missing += others.missing;
    unreadable += others.unreadable;
}

QString VerdictCounts::text() const {
    return listed({tr("%Ln ok", nullptr, ok), tr("%Ln failed", nullptr, failed),
                   tr("%Ln missing", nullptr, missing),
                   tr("%Ln could not be read", nullptr, unreadable)});
}

namespace {

QString inWords(Verdict::Kind kind) {
    switch (kind) {
    case Verdict::Kind::Ok:
        return QCoreApplication::translate("Verdict", "ok");
    case Verdict::Kind::Failed:
        return QCoreApplication::translate("Verdict", "failed");
    case Verdict::Kind::Missing:
        return QCoreApplication::translate("Verdict", "missing");
    case Verdict::Kind::Unreadable:
        return QCoreApplication::translate("Verdict", "could not be read");
    }
    return {};
}

} // namespace

QString sentence(const Verdict& verdict) {
    const QString what = inWords(verdict.kind);
    const bool saysMore = verdict.kind != Verdict::Kind::Missing && !verdict.note.isEmpty() &&
                          verdict.note != verdict.file;
    const QString line =
        saysMore ? QCoreApplication::translate("Verdict", "%1: %2 (%3)")
                       .arg(verdict.file, what, verdict.note)
                 : QCoreApplication::translate("Verdict", "%1: %2").arg(verdict.file, what);
    const bool wasCompared = verdict.kind == Verdict::Kind::Failed && !verdict.found.isEmpty() &&
                             verdict.found != verdict.expected;
    return wasCompared ? QCoreApplication::translate("Verdict", "%1; expected %2, found %3")
                             .arg(line, verdict.expected, verdict.found)
                       : line;
}

QString word(Verdict::Kind kind) {
    switch (kind) {
    case Verdict::Kind::Ok:
        return QStringLiteral("ok");
    case Verdict::Kind::Failed:
        return QStringLiteral("failed");
    case Verdict::Kind::Missing:
        return QStringLiteral("missing");
    case Verdict::Kind::Unreadable:
        return QStringLiteral("unreadable");
    }
    return {};
}

} // namespace quav
