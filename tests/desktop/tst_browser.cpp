// The web engine, as the program opens it: what pages may do, and what the main window shows in it.

#include "DesktopFixture.h"

#include "documents/frmBrowser.h"
#include "documents/frmHelp.h"
#include "platform/ImageFile.h"
#include "platform/qt/QtPrintJob.h"
#include "platform/qt/WidgetBrowsers.h"
#include "support/LocalServer.h"
#include "support/PdfFile.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QTabBar>
#include <QWebEngineView>

#include <csignal>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Before there is an application object.
[[maybe_unused]] const bool prepared = (WidgetBrowsers::prepare(), true);

class BrowserDesktopTest : public DesktopTest
{
protected:
    LocalServer server;
    frmBrowser *browser = nullptr;

    BrowserDesktopTest()
    {
        platform.browsers = std::make_unique<WidgetBrowsers>(QStringLiteral(SHOTLY_ENGINE_MODULE));
        state.HelpFilePath = QStringLiteral(SHOTLY_DELIVERED_DIR "/help");
        state.AppOptions.OptionFlags[BrowserChoice] = 1;
    }
    QString write(const QString &name, const QByteArray &content) const
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        return file.fileName();
    }
    void show(const QString &page)
    {
        state.ContentsPagePath = page;
        state.ShowContentsRequested = true;
        window->openContentsPage();
        browser = window->findChild<frmBrowser *>();
        ASSERT_TRUE(browser);
        expectAt(u"file://"_s + page);
    }
    void expectAt(const QString &address)
    {
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return browser->windowTitle() == u'<' + address; }, desktopPatience))
            << browser->windowTitle().toStdString();
    }
    QWidget *page() { return control(u"brwWebBrowser"_s); }
    /// The link in the corner, once the page is drawn: the engine takes no clicks before.
    void clickOnLink()
    {
        EXPECT_TRUE(seen(qRgb(0xf0, 0xe0, 0xd0)));
        click(page()->mapToGlobal(QPoint(60, 50)));
    }
    QString problem()
    {
        const auto *label = page()->findChild<QLabel *>(u"lblProblem"_s);
        return label->isVisible() ? label->text() : QString();
    }
    bool seen(QRgb colour)
    {
        return QTest::qWaitFor(
            [&] {
                return page()->grab().toImage().pixel(page()->width() - 40, page()->height() - 40) == colour;
            },
            desktopPatience);
    }
};
} // namespace

TEST_F(BrowserDesktopTest, AGuideIsShownAndReadAgain)
{
    QImage picture(1400, 1200, QImage::Format_RGB32);
    picture.fill(qRgb(0x20, 0x40, 0x80));
    ImageFile::save(picture, folder.filePath(u"sh1.bmp"_s));
    write(u"sh1.htm"_s, "<body><img src=\r\n\"sh1.bmp\"\r\n></body>");
    const QString contents = write(
        u"index.htm"_s,
        "<body style='margin: 0; background: #f0e0d0'><a href='sh1.htm' style='font-size: 80px'>One</a>");
    show(contents);
    clickOnLink();
    expectAt(u"file://"_s + folder.filePath(u"sh1.htm"_s));
    EXPECT_TRUE(seen(qRgb(0x20, 0x40, 0x80)));
    click(middleOf(control(u"brwWebBrowser"_s)));
    xdotool({u"key"_s, u"alt+Left"_s});
    expectAt(u"file://"_s + contents);

    // Generated again: the same tab shows the new page.
    write(u"index.htm"_s, "<body style='background: #208040'>");
    show(contents);
    EXPECT_TRUE(seen(qRgb(0x20, 0x80, 0x40)));
    EXPECT_EQ(window->findChild<QTabBar *>(u"tab1"_s)->count(), 1);
    EXPECT_EQ(window->findChild<QTabBar *>(u"tab1"_s)->tabText(0), u"Contents"_s);

    xdotool({u"key"_s, u"F1"_s}); // about this screen
    EXPECT_TRUE(QTest::qWaitFor(
        [] {
            for (const QWidget *each : QApplication::topLevelWidgets())
                if (each->windowTitle() == u"Looking at the guide - Shotly Help"_s)
                    return true;
            return false;
        },
        desktopPatience));
}

TEST_F(BrowserDesktopTest, APageOfThisMachineReachesTheNetworkByAClickAlone)
{
    const QString local = write(u"hostile.htm"_s, server.hostilePage(server.address()));
    show(local);
    const QString next = write(u"next.htm"_s, "<body style='background: #208040'>");
    show(next);
    EXPECT_TRUE(seen(qRgb(0x20, 0x80, 0x40)));
    show(local); // whatever it had begun the first time is through
    EXPECT_EQ(server.connections, 0);
    EXPECT_EQ(page()->findChild<QWebEngineView *>()->title(), u"Local"_s); // its script would change it

    clickOnLink();
    expectAt(QString::fromLatin1(server.address()));
    xdotool({u"key"_s, u"alt+Left"_s}); // the keys work on the page of the other site
    expectAt(u"file://"_s + local);
    EXPECT_GT(server.connections, 0);
    EXPECT_EQ(problem(), QString());
}

TEST_F(BrowserDesktopTest, WhatGoesWrongIsToldAndTriedAgain)
{
    const QString local = write(u"a.htm"_s, "<body style='background: #208040'>");
    show(local);
    const auto go = [this](const QString &address) {
        click(middleOf(control(u"cboAddress"_s)));
        xdotool({u"key"_s, u"ctrl+a"_s});
        xdotool({u"type"_s, u"--delay"_s, u"20"_s, address});
        xdotool({u"key"_s, u"Return"_s});
    };
    const QString address = QString::fromLatin1(server.address());
    server.close();
    go(address);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !problem().isEmpty(); }, desktopPatience));
    EXPECT_EQ(problem(), u"The host does not accept the connection."_s);

    // A host that never answers: loading until somebody stops it.
    server.page.clear();
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    go(QString::fromLatin1(server.address()));
    EXPECT_TRUE(QTest::qWaitFor([this] { return server.connections > 0; }, desktopPatience));
    EXPECT_TRUE(QTest::qWaitFor([this] { return browser->windowTitle().endsWith(u" (loading)"_s); },
                                desktopPatience));
    xdotool({u"key"_s, u"Escape"_s});
    expectAt(u"file://"_s + local);

    // The engine's process for the page is killed.
    const auto *engine = page()->findChild<QWebEngineView *>();
    ASSERT_TRUE(engine);
    ::kill(static_cast<pid_t>(engine->page()->renderProcessPid()), SIGKILL);
    EXPECT_TRUE(QTest::qWaitFor([this] { return problem().contains(u"ended"_s); }, desktopPatience));
    page()->findChild<QPushButton *>(u"cmdReload"_s)->click();
    EXPECT_TRUE(seen(qRgb(0x20, 0x80, 0x40)));
    EXPECT_EQ(problem(), QString());
}

TEST_F(BrowserDesktopTest, APageIsPrintedIntoAFile)
{
    QImage picture(1900, 380, QImage::Format_RGB32);
    picture.fill(Qt::blue);
    ImageFile::save(picture, folder.filePath(u"wide.bmp"_s));
    const std::unique_ptr<BrowserView> view = platform.browsers->make();
    bool complete = false;
    BrowserView::Events events;
    events.navigateComplete = [&] { complete = true; };
    view->setEvents(events);
    view->Navigate(write(u"page.htm"_s,
                         "<table width='100%'><tr><td width='96%'><img src='wide.bmp'></td></tr></table>"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return complete; }, desktopPatience));

    const QString pdf = folder.filePath(u"page.pdf"_s);
    QtPrintJob job;
    job.printer().setOutputFileName(pdf);
    job.printer().setPageLayout(
        {QPageSize(QPageSize::A4), QPageLayout::Portrait, {20, 20, 20, 20}, QPageLayout::Millimeter});
    job.begin();
    std::optional<bool> printed;
    view->print(job.device(), [&](bool ok) { printed = ok; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return printed.has_value(); }, desktopPatience));
    EXPECT_TRUE(*printed);
    job.finish();
    const QList<QImage> pages = PdfFile::pages(pdf);
    ASSERT_EQ(pages.size(), 1);
    const QRect area = PdfFile::printedArea(pages[0]);
    EXPECT_GE(area.left(), 199);
    EXPECT_LE(area.right(), 1901);
    EXPECT_LE(qAbs(area.height() * 5 - area.width()), 20); // whole, in its proportions
}
