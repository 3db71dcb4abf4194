#include <QTest>
class ShntoolTest : public QObject {
    Q_OBJECT
};
QTEST_GUILESS_MAIN(ShntoolTest)
#include "ShntoolTest.moc"
