#include "platform/qt/BrowserAddress.h"
#include "platform/qt/BrowserPane.h"
#include "platform/qt/TextBrowserView.h"
#include "platform/qt/WidgetBrowsers.h"
#include "support/LocalServer.h"
#include "support/PdfFile.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPdfWriter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextCursor>

using namespace Qt::Literals::StringLiterals;
using BrowserAddress::Kind;

namespace
{
/// The view that is always there, with its panel for problems, over pages in a temporary folder.
class BrowserViewTest : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    std::unique_ptr<BrowserView> view = WidgetBrowsers(folder.filePath(u"missing.so"_s)).make();
    TextBrowserView *text = view->widget()->findChild<TextBrowserView *>();
    int completed = 0;
    QStringList outside;

    BrowserViewTest()
    {
        BrowserView::Events events;
        events.navigateComplete = [this] { ++completed; };
        events.openOutside = [this](const QString &address) { outside += address; };
        view->setEvents(std::move(events));
        view->widget()->resize(600, 400);
        view->widget()->show();
    }
    QString write(const QString &name, const QByteArray &content) const
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        return file.fileName();
    }
    QString problem() const
    {
        const auto *label = view->widget()->findChild<QLabel *>(u"lblProblem"_s);
        return label->isVisible() ? label->text() : QString();
    }
    QPushButton *button(const QString &name) const { return view->widget()->findChild<QPushButton *>(name); }
};
} // namespace

TEST(BrowserAddressTest, AddressesAreUnderstoodAsTheyAreTyped)
{
    struct Case {
        const char16_t *typed;
        QByteArray address;
    };
    for (const Case &each : std::initializer_list<Case>{
             {u"/a/My guide #1/50%.htm", "file:///a/My%20guide%20%231/50%25.htm"},
             {u" /a//b/../c.htm ", "file:///a/c.htm"},
             {u"file:////a/b.htm", "file:///a/b.htm"},
             {u"/gr\u00fc\u00df?.htm", "file:///gr%C3%BC%C3%9F%3F.htm"},
             {u"example.com/x?q=1", "http://example.com/x?q=1"},
             {u"localhost:8080", "http://localhost:8080"},
             {u"https://example.com/a b", "https://example.com/a%20b"},
             {u"javascript:alert(1)", "javascript:alert(1)"},
             {u"how do I", ""},
             {u"http://", ""},
             {u"", ""},
         }) {
        const QUrl address = BrowserAddress::understand(QString::fromUtf16(each.typed));
        EXPECT_EQ(address.toEncoded(), each.address);
        if (!each.address.isEmpty()) {
            EXPECT_EQ(BrowserAddress::understand(BrowserAddress::shown(address)), address)
                << each.address.data();
        }
    }
    EXPECT_EQ(BrowserAddress::understand(u"~/x.htm"_s).toLocalFile(), QDir::homePath() + u"/x.htm"_s);
    EXPECT_EQ(BrowserAddress::shown(QUrl(u"file:///a/My%20gr%C3%BCn.htm"_s)),
              u"file:///a/My gr\u00fcn.htm"_s);
}

TEST_F(BrowserViewTest, OnlyPagesAreShownAndOnlyDocumentsHandedOver)
{
    const auto kind = [](const QString &address) {
        return BrowserAddress::check(BrowserAddress::understand(address)).kind;
    };
    for (const char *name : {"a.htm", "b.HTML", "c.txt", "d.bmp", "e.png", "f.xhtml"})
        EXPECT_EQ(kind(write(QLatin1StringView(name), "x")), Kind::Page) << name;
    for (const char *name : {"a.pdf", "b.DOC", "c.odt"})
        EXPECT_EQ(kind(write(QLatin1StringView(name), "x")), Kind::Document) << name;
    for (const char *name : {"a.desktop.bin", "b.so", "c.zip"})
        EXPECT_EQ(kind(write(QLatin1StringView(name), "x")), Kind::Refused) << name;
    for (const char16_t *address : {u"file://host/a.htm", u"javascript:alert(1)", u"data:text/html,x",
                                    u"chrome://crash", u"/dev/zero", u"ftp://example.com/", u""})
        EXPECT_EQ(kind(QString::fromUtf16(address)), Kind::Refused)
            << QString::fromUtf16(address).toStdString();
    EXPECT_EQ(kind(u"https://example.com"_s), Kind::Page);
    const QUrl elsewhere(u"file://host"_s + write(u"here.htm"_s, "x"));
    EXPECT_EQ(BrowserAddress::check(elsewhere).reason, u"It names a file of another machine."_s);

    const QUrl local(u"file:///a.htm"_s);
    const QUrl network(u"https://a.example/"_s);
    EXPECT_FALSE(BrowserAddress::mayReachNetwork(local, local));
    EXPECT_FALSE(BrowserAddress::mayReachNetwork({}, {})); // a frame without an origin
    EXPECT_TRUE(BrowserAddress::mayReachNetwork(network, {}));
    EXPECT_TRUE(BrowserAddress::mayReachNetwork({}, network)); // a frame of another site
}

TEST_F(BrowserViewTest, WhatCannotBeShownIsToldInThePlaceOfThePage)
{
    const QString page = write(u"a.htm"_s, "first");
    const QString later = folder.filePath(u"later.htm"_s);
    view->Navigate(page);
    EXPECT_EQ(problem(), QString());
    view->Navigate(later);
    EXPECT_EQ(problem(), u"There is no such file."_s);
    EXPECT_EQ(view->LocationURL(), u"file://"_s + later);
    EXPECT_FALSE(button(u"cmdReload"_s)->isVisible());
    // Back leads to the page that was there.
    EXPECT_TRUE(view->canGoBack());
    view->GoBack();
    EXPECT_EQ(problem(), QString());
    EXPECT_EQ(view->LocationURL(), u"file://"_s + page);
    EXPECT_FALSE(view->canGoBack());
    // Refreshing tries again.
    view->Navigate(later);
    write(u"later.htm"_s, "second");
    view->Refresh();
    EXPECT_EQ(text->toPlainText(), u"second"_s);

    view->Navigate(folder.path());
    EXPECT_EQ(problem(), u"It is a folder, not a page."_s);
    view->Navigate(u"how do I"_s);
    EXPECT_EQ(problem(), u"This is not an address."_s);
    view->Navigate(u"https://example.com/"_s); // this engine has no network
    EXPECT_NE(problem(), QString());
    button(u"cmdOpenOutside"_s)->click();
    view->Navigate(write(u"guide.pdf"_s, "%PDF"));
    EXPECT_EQ(outside,
              (QStringList{u"https://example.com/"_s, u"file://"_s + folder.filePath(u"guide.pdf"_s)}));
}

TEST_F(BrowserViewTest, PagesKeepTheirColoursOnADarkDesktop)
{
    const QPalette before = QApplication::palette();
    QApplication::setPalette(QPalette(QColor(0x32, 0x32, 0x32)));
    const auto made = WidgetBrowsers(folder.filePath(u"missing.so"_s)).make();
    made->Navigate(write(u"page.htm"_s,
                         "<style>.c { color: #aa0000; }</style>"
                         "<a href='b.htm'>b</a><a class='c' href='c.htm'>c</a><a name='d'>d</a>"));
    auto *shown = made->widget()->findChild<TextBrowserView *>();
    const auto colourAt = [shown](int position) {
        QTextCursor cursor(shown->document());
        cursor.setPosition(position);
        return cursor.charFormat().foreground().color();
    };
    EXPECT_EQ(colourAt(1), QColor(0x00, 0x00, 0xee));
    EXPECT_EQ(colourAt(2), QColor(0xaa, 0x00, 0x00));
    EXPECT_EQ(colourAt(3), QColor(Qt::black)) << "no link";
    EXPECT_EQ(shown->palette().color(QPalette::Text), QColor(Qt::black));
    EXPECT_EQ(shown->viewport()->palette().color(QPalette::Base), QColor(Qt::white));
    QApplication::setPalette(before);
}

TEST_F(BrowserViewTest, PagesAreReadAsBrowsersReadThem)
{
    struct Case {
        QByteArray page;
        QString text;
    };
    for (const Case &each : std::initializer_list<Case>{
             {"<meta http-equiv='Content-Type' content='text/html; charset=iso-8859-1'>\x93\xe4\x94 \x80",
              u"\u201c\u00e4\u201d \u20ac"_s},
             {"no declaration \x85", u"no declaration \u2026"_s},
             {"<meta charset=\"utf-8\">\xc3\xa4", u"\u00e4"_s},
             {"\xEF\xBB\xBF\xc3\xa4", u"\u00e4"_s},
             {QByteArray("\xFF\xFE\xe4\0", 4), u"\u00e4"_s},
         }) {
        view->Navigate(write(u"page.htm"_s, each.page)); // the same file again and again: it is read again
        EXPECT_EQ(text->toPlainText().remove(QChar(0xfeff)), each.text);
    }
    QImage picture(7, 5, QImage::Format_RGB32);
    picture.fill(Qt::red);
    EXPECT_TRUE(picture.save(folder.filePath(u"p.bmp"_s)));
    view->Navigate(write(u"page.htm"_s, "<a href='p.bmp'><img src=\r\n\"p.bmp\"\r\n></a>"));
    const auto shown = [this] {
        const QImage screen = view->widget()->grab().toImage();
        int red = 0;
        for (int y = 0; y < screen.height(); ++y)
            for (int x = 0; x < screen.width(); ++x)
                red += screen.pixelColor(x, y) == Qt::red ? 1 : 0;
        return red;
    };
    EXPECT_EQ(shown(), 35);
    QTest::mouseClick(text->viewport(), Qt::LeftButton, {}, {14, 14}); // the link: the picture as a page
    EXPECT_EQ(view->LocationURL(), u"file://"_s + folder.filePath(u"p.bmp"_s));
    EXPECT_EQ(shown(), 35);
    view->GoBack();
    EXPECT_TRUE(view->canGoForward());
    EXPECT_EQ(completed, 8);
}

TEST_F(BrowserViewTest, APageReachesTheNetworkByAClickAlone)
{
    LocalServer server;
    view->Navigate(write(u"hostile.htm"_s, server.hostilePage(server.address())));
    EXPECT_EQ(view->title(), u"Local"_s);
    for (int i = 0; i < 20; ++i)
        QTest::qWait(0);
    EXPECT_EQ(server.connections, 0);
    EXPECT_TRUE(outside.isEmpty());
    QTest::mouseClick(text->viewport(), Qt::LeftButton, {}, {30, 30});
    EXPECT_EQ(outside, QStringList(QString::fromLatin1(server.address())));
}

TEST_F(BrowserViewTest, PicturesArePrintedAsWideAsThePaperAtMost)
{
    QImage picture(2000, 400, QImage::Format_RGB32);
    picture.fill(Qt::blue);
    EXPECT_TRUE(picture.save(folder.filePath(u"wide.bmp"_s)));
    view->Navigate(write(u"page.htm"_s, "<table width='100%'><tr><td width='2%'></td><td width='96%'>"
                                        "<img src='wide.bmp'></td><td width='2%'></td></tr></table>"));
    const QString pdf = folder.filePath(u"page.pdf"_s);
    bool printed = false;
    {
        QPdfWriter writer(pdf);
        writer.setPageLayout(
            {QPageSize(QPageSize::A4), QPageLayout::Portrait, {20, 20, 20, 20}, QPageLayout::Millimeter});
        view->print(writer, [&](bool ok) { printed = ok; });
    }
    EXPECT_TRUE(printed);
    const QList<QImage> pages = PdfFile::pages(pdf);
    ASSERT_EQ(pages.size(), 1);
    const QRect area = PdfFile::printedArea(pages[0]); // of 170 mm
    EXPECT_GE(area.left(), 200);
    EXPECT_LE(area.right(), 1900);
    EXPECT_GT(area.width(), 1400);
    EXPECT_LE(qAbs(area.height() * 5 - area.width()), 20); // whole, in its proportions
}
