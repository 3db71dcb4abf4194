#include "gui/SingleInstance.h"

#include "support/Table.h"

#include <QSignalSpy>
#include <QTest>

#include <future>

using namespace quav;
using namespace quav::test;
using namespace Qt::StringLiterals;

namespace {

/// The start that has the name, until it ends.
class First : public SingleInstance {
public:
    ~First() override { release(); }
};

/// Whether another start, on a connection and a thread of its own, hands over what it is given.
bool laterStartHandsOver(const QStringList& files, const QString& tab) {
    const QString name = u"later"_s;
    auto started = std::async(std::launch::async, [&] {
        SingleInstance instance(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name));
        return !instance.claim() && instance.handOver(files, tab);
    });
    const auto ended = [&] {
        return started.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    };
    const bool handedOver = QTest::qWaitFor(ended, quav::test::patience) && started.get();
    QDBusConnection::disconnectFromBus(name);
    return handedOver;
}

} // namespace

class SingleInstanceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aLaterStartHandsOverWhatItWasGiven_data();
    void aLaterStartHandsOverWhatItWasGiven();
    void withoutABusEveryStartIsTheFirst();
};

void SingleInstanceTest::aLaterStartHandsOverWhatItWasGiven_data() {
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("tab");
    row("nothing", QStringList(), QString());
    row("files", QStringList{u"/music/Größe #1 50%.flac"_s, u"/music/b.flac"_s}, QString());
    row("a file and a tab", QStringList{u"/a.wav"_s}, u"encode"_s);
}

void SingleInstanceTest::aLaterStartHandsOverWhatItWasGiven() {
    QFETCH(QStringList, files);
    QFETCH(QString, tab);
    First first;
    const QSignalSpy activated(&first, &SingleInstance::activated);
    const QSignalSpy opened(&first, &SingleInstance::filesOpened);
    const QSignalSpy tabs(&first, &SingleInstance::tabRequested);
    QVERIFY2(first.claim(), "Run this under dbus-run-session");
    QVERIFY(laterStartHandsOver(files, tab));
    QCOMPARE(activated.size(), tab.isEmpty() ? 1 : 2);
    QCOMPARE(opened.size(), files.isEmpty() ? 0 : 1);
    QCOMPARE(opened.value(0).value(0).toStringList(), files);
    QCOMPARE(tabs.size(), tab.isEmpty() ? 0 : 1);
    QCOMPARE(tabs.value(0).value(0).toString(), tab);
    first.release();
    QVERIFY(First().claim());
}

void SingleInstanceTest::withoutABusEveryStartIsTheFirst() {
    SingleInstance alone(QDBusConnection(u"no such connection"_s));
    QVERIFY(alone.claim());
}

QTEST_GUILESS_MAIN(SingleInstanceTest)
#include "SingleInstanceTest.moc"
