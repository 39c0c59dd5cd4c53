#pragma once

#include "paint/frmPaint.h"

#include "platform/ImageFile.h"
#include "support/FakeWorkspace.h"
#include "support/ScriptedPrompter.h"
#include "support/TestState.h"

#include <gtest/gtest.h>
#include <QAction>
#include <QLabel>
#include <QTest>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

/// The editor with a picture of which every pixel is different, 60 x 40.
class frmPaintTest : public ::testing::Test, protected TestState
{
protected:
    ScriptedPrompter prompter;
    FakeWorkspace workspace;
    QString path = folder.filePath(u"picture.bmp"_s);
    QImage original{60, 40, QImage::Format_RGB32};
    frmPaint form{{state, prompter, workspace}};

    frmPaintTest()
    {
        for (int y = 0; y < original.height(); ++y)
            for (int x = 0; x < original.width(); ++x)
                original.setPixel(x, y, qRgb((4 * x + 7 * y) % 256, (5 * x + 6 * y) % 256, x * y % 256));
        ImageFile::save(original, path);
        form.showPic(path);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&form));
    }
    ~frmPaintTest() override
    {
        if (form.windowTitle().isEmpty())
            ADD_FAILURE() << "no title";
    }

    template <typename Control>
    Control &control(const QString &name)
    {
        auto *found = form.findChild<Control *>(name);
        EXPECT_TRUE(found) << name.toStdString();
        return *found;
    }
    QWidget &canvas() { return control<QWidget>(u"picPaint"_s); }
    void tool(int index)
    {
        QTest::mouseClick(&control<QToolButton>(u"optTools_%1"_s.arg(index)), Qt::LeftButton);
    }
    void menu(const QString &name)
    {
        auto &action = control<QAction>(name);
        EXPECT_TRUE(action.isEnabled()) << name.toStdString();
        action.trigger();
    }
    /// On the canvas, in its units.
    void drag(QPoint from, QPoint to, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mousePress(&canvas(), Qt::LeftButton, modifiers, from);
        QTest::mouseMove(&canvas(), to);
        QTest::mouseRelease(&canvas(), Qt::LeftButton, modifiers, to);
    }
    void click(QPoint at, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(&canvas(), button, modifiers, at);
    }
    /// As it is on the screen, without the overlay of a finished gesture.
    QImage shown() { return canvas().grab().toImage().convertToFormat(QImage::Format_RGB32); }
    QString status() { return control<QLabel>(u"statusText"_s).text(); }
    QString position() { return control<QLabel>(u"statusPosition"_s).text(); }
    void closeUnsaved()
    {
        prompter.expectAsk(Question::PaintSaveChanges, Answer::No);
        EXPECT_TRUE(form.close());
        EXPECT_TRUE(form.close()) << "nobody is asked twice";
    }
};
