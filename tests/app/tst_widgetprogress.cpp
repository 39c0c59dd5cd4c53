#include "app/WidgetProgress.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace
{
QProgressDialog *box()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *dialog = qobject_cast<QProgressDialog *>(widget))
            return dialog;
    }
    return nullptr;
}

/// Work of one step, without the event loop.
void work(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (!timer.hasExpired(milliseconds)) {
    }
}
} // namespace

TEST(WidgetProgressTest, EventsRunDuringTheWorkAndTheBoxComesWhenItTakesAMoment)
{
    WidgetProgress progress;
    int beats = 0;
    QTimer heart;
    QObject::connect(&heart, &QTimer::timeout, [&] { ++beats; });
    heart.start(10);
    progress.begin(u"Working"_s, 1000);
    bool shown = false;
    int done = 0;
    for (; done < 1000 && !shown; ++done) {
        work(10);
        EXPECT_TRUE(progress.step(done));
        shown = box() && box()->isVisible();
    }
    EXPECT_GT(done, 3); // not at once: short work shows no box
    EXPECT_TRUE(shown);
    EXPECT_GE(beats, 1);
    progress.end();
    EXPECT_EQ(box(), nullptr);
}

TEST(WidgetProgressTest, CancelAnswersTheNextStep)
{
    WidgetProgress progress;
    progress.begin(u"Working"_s, 1000);
    int done = 0;
    while (done < 1000 && !(box() && box()->isVisible())) {
        work(10);
        progress.step(++done);
    }
    QTimer::singleShot(0, [] { QTest::mouseClick(box()->findChild<QPushButton *>(), Qt::LeftButton); });
    int more = 0;
    while (progress.step(++done) && ++more < 500)
        work(10);
    EXPECT_LT(more, 500);
    progress.begin(u"Putting back"_s, 10); // within the work that was cancelled
    EXPECT_TRUE(progress.step(1));
    EXPECT_EQ(box()->findChild<QPushButton *>(), nullptr);
    progress.end();
    EXPECT_TRUE(progress.active());
    progress.end();
    EXPECT_FALSE(progress.active());
    EXPECT_EQ(box(), nullptr);
}
