#pragma once

#include "DesktopFixture.h"

#include "annotate/frmText.h"
#include "annotate/frmVpic.h"

#include <QAction>
#include <QLineEdit>
#include <QListView>
#include <QTimer>
#include <QToolBar>

inline constexpr QSize small(300, 200); ///< a picture that is seen as a whole

/// The viewer in the real main window, its user, and what is seen of it. Positions are pixels of the picture
/// and of the screen.
class ViewerTest : public DesktopTest
{
protected:
    explicit ViewerTest(const std::function<void(Module1 &)> &prepare = [](Module1 &) {})
        : DesktopTest(prepare)
    {
        QObject::connect(&m_dialogWatch, &QTimer::timeout, window.get(), [this] {
            auto *dialog = qobject_cast<frmText *>(QApplication::activeModalWidget());
            if (!dialog || !dialog->isActiveWindow())
                return;
            m_dialogWatch.stop();
            std::exchange(m_inDialog, {})(*dialog);
            if (becomes([&] { return !dialog->isVisible(); }))
                return;
            ADD_FAILURE() << "the dialog stays open";
            dialog->reject();
        });
    }

    /// Makes the project "guide" of these files and opens the viewer with the button of the main window.
    void openViewer(const std::vector<std::pair<QString, QImage>> &files)
    {
        directory = state.AppOptions.BaseDirectory + QStringLiteral("/guide");
        state.FileSystem.createFolder(directory);
        for (const auto &file : files)
            EXPECT_TRUE(file.second.save(path(file.first), "BMP"));
        QProcess sqlite;
        sqlite.start(QStringLiteral("sqlite3"),
                     {state.DatabasePath,
                      QStringLiteral("insert into PageData(ProjectName, PageStatus, ScreenShotFilePath, "
                                     "ProjectDirectory) values('guide', 'OK', '', '%1')")
                          .arg(directory)});
        EXPECT_TRUE(sqlite.waitForFinished() && sqlite.exitCode() == 0);
        window->addProjectName(QStringLiteral("guide"));
        window->setProjectText(QStringLiteral("guide"));
        state.AppOptions.ProjectName = QStringLiteral("guide");
        click(middleOf(control(QStringLiteral("Painter"))));
        ASSERT_TRUE(becomes([this] { return window->findChild<frmVpic *>(); }));
        findControls();
    }
    void findControls()
    {
        viewer = window->findChild<frmVpic *>();
        canvas = viewer->findChild<QWidget *>(QStringLiteral("Picture1"));
        list = viewer->findChild<QListView *>(QStringLiteral("File1"));
        name = viewer->findChild<QLineEdit *>(QStringLiteral("txtFileName"));
        EXPECT_TRUE(becomes([this] { return list->hasFocus(); }));
        // Where the window is to the pixel, which its own units do not tell.
        xdotool({QStringLiteral("mousemove"), QStringLiteral("--window"), QString::number(window->winId()),
                 QStringLiteral("0"), QStringLiteral("0")});
        m_corner = platform.screen->pointerPosition();
    }
    QString path(const QString &file) const { return directory + u'/' + file; }

    static bool becomes(const std::function<bool()> &condition)
    {
        return QTest::qWaitFor(condition, desktopPatience);
    }

    // ---- the user

    void key(const QString &keys) const
    {
        xdotool({QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("30"), keys});
    }
    QWidget *button(const QString &action) const
    {
        auto *found = viewer->findChild<QAction *>(action);
        const auto *bar = viewer->findChild<QToolBar *>(action.startsWith(u't') ? QStringLiteral("tlbcolor")
                                                                                : QStringLiteral("tlbmain"));
        return found ? bar->widgetForAction(found) : nullptr;
    }
    bool enabled(const QString &action) const { return button(action)->isEnabled(); }
    void choose(const QString &action) const
    {
        ASSERT_TRUE(button(action)) << action.toStdString();
        click(middleOf(button(action)));
        EXPECT_TRUE(becomes([&] { return action.startsWith(u't') || state.CurrentTool == action; }));
    }
    QPoint onScreen(const QWidget *widget, QPoint position) const
    {
        return m_corner + widget->mapTo(window.get(), position) * widget->devicePixelRatio();
    }
    /// Where a pixel of the picture is on the screen.
    QPoint at(int x, int y) const { return onScreen(canvas, QPoint(1, 1)) + QPoint(x, y); }
    static QStringList moving(QPoint to)
    {
        return {QStringLiteral("mousemove"), QString::number(to.x()), QString::number(to.y())};
    }
    void press(QPoint from) const
    {
        xdotool(moving(from) + QStringList{QStringLiteral("mousedown"), QStringLiteral("1")});
    }
    void move(QPoint to) const { xdotool(moving(to)); }
    void release(QPoint to) const
    {
        xdotool(moving(to) + QStringList{QStringLiteral("mouseup"), QStringLiteral("1")});
    }
    void drag(QPoint from, QPoint to) const
    {
        press(from);
        release(to);
    }
    void clickRow(int row)
    {
        const QRect place = list->visualRect(list->model()->index(row, 0));
        // Not twice at the same place, which may be a double click.
        click(onScreen(list->viewport(), QPoint(8 + 12 * (m_rowClicks++ % 2), place.center().y())));
    }
    /// What the user does in the dialog that the next click opens; at the end it is closed.
    void inTextDialog(std::function<void(frmText &)> action)
    {
        m_inDialog = std::move(action);
        m_dialogWatch.start(10);
    }

    // ---- the screen

    /// The part of a picture of this size that is not scrolled away.
    QRect visible(QSize picture) const
    {
        const QWidget *viewport = canvas->parentWidget();
        const QRect around(onScreen(viewport, {0, 0}), viewport->size() * viewport->devicePixelRatioF());
        return QRect(at(0, 0), picture).intersected(around).translated(-at(0, 0));
    }
    QImage seen(QRect part) { return platform.screen->grab(part.translated(at(0, 0))); }
    void expectSeen(const QImage &picture, const char *what)
    {
        const QImage wanted = picture.copy(visible(picture.size()));
        EXPECT_TRUE(becomes([&] { return seen(visible(picture.size())) == wanted; })) << what;
    }
    /// The pixels of the screen that are not those of the picture.
    QList<QPoint> changed(const QImage &picture)
    {
        const QImage now = seen(picture.rect());
        QList<QPoint> found;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (now.pixel(x, y) != picture.pixel(x, y))
                    found.emplace_back(x, y);
        return found;
    }
    QRect changedArea(const QImage &picture) { return QPolygon(changed(picture)).boundingRect(); }

    /// What another program finds in a file.
    QImage inFile(const QString &file, QSize size = small) const
    {
        QProcess convert;
        convert.start(QStringLiteral("convert"),
                      {path(file), QStringLiteral("-depth"), QStringLiteral("8"), QStringLiteral("rgb:-")});
        EXPECT_TRUE(convert.waitForFinished());
        const QByteArray bytes = convert.readAllStandardOutput();
        if (bytes.size() != qsizetype{3} * size.width() * size.height())
            return {};
        return QImage(reinterpret_cast<const uchar *>(bytes.constData()), size.width(), size.height(),
                      qsizetype{3} * size.width(), QImage::Format_RGB888)
            .convertToFormat(QImage::Format_RGB32);
    }
    void save(const QString &file, const QImage &expected)
    {
        const std::size_t before = user.asked.size();
        user.expectFile(Question::SaveImageAs, path(file));
        choose(QStringLiteral("Save"));
        ASSERT_TRUE(becomes([&] { return user.asked.size() > before; }));
        EXPECT_EQ(user.asked.back().proposal, file);
        EXPECT_EQ(inFile(file), expected);
    }

    QString directory;
    frmVpic *viewer = nullptr;
    QWidget *canvas = nullptr;
    QListView *list = nullptr;
    QLineEdit *name = nullptr;

private:
    QPoint m_corner;
    int m_rowClicks = 0;
    QTimer m_dialogWatch;
    std::function<void(frmText &)> m_inDialog;
};
