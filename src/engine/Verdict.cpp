#include "engine/Verdict.h"

namespace quav {

VerdictCounts::VerdictCounts(const Verdicts& verdicts) {
    add(verdicts);
}

void VerdictCounts::add(const Verdicts& verdicts) {
    for (const Verdict& verdict : verdicts) {
        switch (verdict.kind) {
        case Verdict::Kind::Ok:
            ++ok;
            break;
        case Verdict::Kind::Failed:
            ++failed;
            break;
        case Verdict::Kind::Missing:
            ++missing;
            break;
        case Verdict::Kind::Unreadable:
            ++unreadable;
            break;
        }
    }
}

QString VerdictCounts::text() const {
    return tr("%L1 ok, %L2 failed, %L3 missing, %L4 could not be read")
        .arg(ok)
        .arg(failed)
        .arg(missing)
        .arg(unreadable);
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
    QString line = QStringLiteral("%1: %2").arg(verdict.file, inWords(verdict.kind));
    const bool saysMore = verdict.kind != Verdict::Kind::Missing && verdict.note != verdict.file;
    if (saysMore && !verdict.note.isEmpty()) {
        line += QStringLiteral(" (%1)").arg(verdict.note);
    }
    if (verdict.kind == Verdict::Kind::Failed && !verdict.found.isEmpty() &&
        verdict.found != verdict.expected) {
        line += QCoreApplication::translate("Verdict", "; expected %1, found %2")
                    .arg(verdict.expected, verdict.found);
    }
    return line;
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
