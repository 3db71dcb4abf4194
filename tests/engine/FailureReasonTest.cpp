#include "engine/FailureReason.h"

#include "support/Table.h"

#include <QTest>

using namespace quav;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using quav::test::columns;
using quav::test::row;

class FailureReasonTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aReasonIsOneLineThatIsNeverEmpty_data() {
        columns<FailureFacts, QString, QString>("facts", "said", "reason");
        const FailureFacts failed{u"flac"_s, 1, {}, false};
        const FailureFacts full{u"flac"_s, 1, {}, true};
        const FailureFacts killed{u"flac"_s, 128 + 9, {}, true};
        const FailureFacts stalled{u"flac"_s, 128 + 9, 610s, false};
        const QString error = u"flac 1.4.2\n\na.wav: ERROR during encoding\n"
                              "       state = FLAC__STREAM_ENCODER_CLIENT_ERROR\n\n"_s;
        row("the line of the error", failed, error, "a.wav: ERROR during encoding");
        row("else the last one", failed, "one\ntwo\n \n", "two");
        row("an error at the very beginning", failed, "ERROR: no\nusage", "ERROR: no");
        row("nothing said", failed, " \n", "flac failed with exit status 1 and said nothing");
        row("a bare path", failed, "/a/b c\n", "flac failed with exit status 1: /a/b c");
        row("a path behind its sentence", FailureFacts(), "Error writing tags to file:\n/a/b\n",
            "Error writing tags to file: /a/b");
        row("no tool, nothing said", FailureFacts(), "", "It failed, and nothing says why");
        row("no tool, a path", FailureFacts(), "/a/b", "It failed: /a/b");
        row("a full disk", full, error, "No space left on device: a.wav: ERROR during encoding");
        row("a full disk, nothing said", full, "", "No space left on device");
        row("the tool says so", failed, "x: No space left on device\nERROR: gave up",
            "x: No space left on device");
        row("the quota", full, "x: Disk quota exceeded\n", "x: Disk quota exceeded");
        row("killed", killed, error, "flac was ended by signal 9 (Killed)");
        row("crashed", FailureFacts{u"mac"_s, 128 + 11, {}, false}, "",
            "mac was ended by signal 11 (Segmentation fault)");
        row("no signal's number", FailureFacts{u"mac"_s, 255, {}, false}, "",
            "mac failed with exit status 255 and said nothing");
        row("ended for doing nothing", stalled, error,
            "flac neither read, wrote nor printed anything for 10 min and was ended");
    }
    void aReasonIsOneLineThatIsNeverEmpty() {
        QFETCH(FailureFacts, facts);
        QFETCH(QString, said);
        QTEST(failureReason(facts, said), "reason");
    }
};

QTEST_APPLESS_MAIN(FailureReasonTest)
#include "FailureReasonTest.moc"
