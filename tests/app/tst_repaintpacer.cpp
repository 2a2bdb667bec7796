#include "app/RepaintPacer.h"

#include <QWidget>
#include <QtTest>

namespace {
class Canvas : public QWidget {
public:
    int paints = 0;

protected:
    void paintEvent(QPaintEvent *) override { ++paints; }
};
} // namespace

class tst_RepaintPacer : public QObject {
    Q_OBJECT

private slots:
    // Repaints asked for within a frame of the last one are held, never lost: the
    // last change always reaches the screen.
    void heldRepaintArrives() {
        Canvas canvas;
        new RepaintPacer(canvas, 200);
        canvas.resize(100, 100);
        canvas.show();
        QVERIFY(QTest::qWaitForWindowExposed(&canvas));
        QTRY_VERIFY(canvas.paints >= 1);
        const int before = canvas.paints;
        for (int i = 0; i < 20; ++i) {
            canvas.update();
            QCoreApplication::processEvents();
        }
        QTRY_VERIFY(canvas.paints > before);
        const int after = canvas.paints;
        canvas.update();
        QTRY_VERIFY(canvas.paints > after);
    }
};

QTEST_MAIN(tst_RepaintPacer)
#include "tst_repaintpacer.moc"
