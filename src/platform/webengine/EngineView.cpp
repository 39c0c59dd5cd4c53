#include "platform/webengine/EngineView.h"

#include "platform/qt/BrowserAddress.h"
#include "platform/webengine/EnginePage.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QFile>
#include <QLocale>
#include <QMenu>
#include <QPageRanges>
#include <QPrinter>
#include <QWebEngineHistory>

#include <utility>

namespace
{
constexpr int printResolution = 300; // dots per inch
}

EngineView::EngineView()
{
    m_profile.setHttpCacheType(QWebEngineProfile::NoCache);
    m_profile.setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
    m_profile.setHttpAcceptLanguage(QLocale().bcp47Name());
    m_page = std::make_unique<EnginePage>(m_profile, m_events);
    setPage(m_page.get());

    connect(m_page.get(), &EnginePage::begun, this, [this] {
        m_busy = true;
        m_hadFocus = isAncestorOf(QApplication::focusWidget());
        tell(m_events.changed);
    });
    connect(m_page.get(), &EnginePage::ended, this, [this](bool arrived) {
        m_busy = false;
        // A page of another site comes in a widget of its own; the focus may have gone with the one before.
        if (m_hadFocus && !QApplication::focusWidget())
            setFocus();
        if (arrived)
            tell(m_events.navigateComplete);
        tell(m_events.changed);
    });
    connect(m_page.get(), &EnginePage::placeChanged, this, [this] {
        tell(m_events.navigateComplete);
        tell(m_events.changed);
    });
    connect(this, &QWebEngineView::titleChanged, this, [this] { tell(m_events.changed); });
    connect(this, &QWebEngineView::printFinished, this, &EngineView::endPrinting);
}

EngineView::~EngineView()
{
    m_events = {};
    m_printed = nullptr;
    setPage(nullptr);
    m_page.reset(); // before its profile
}

void EngineView::Navigate(const QString &address)
{
    m_busy = true; // it has not begun to load
    load(BrowserAddress::understand(address));
    tell(m_events.changed);
}

void EngineView::Stop()
{
    m_busy = false;
    stop();
}

bool EngineView::Busy() const
{
    return m_busy;
}

QString EngineView::LocationURL() const
{
    return BrowserAddress::shown(m_page->shownAddress());
}

bool EngineView::canGoBack() const
{
    return history()->canGoBack();
}

bool EngineView::canGoForward() const
{
    return history()->canGoForward();
}

void EngineView::print(QPagedPaintDevice &device, std::function<void(bool)> done)
{
    auto *printer = dynamic_cast<QPrinter *>(&device);
    if (!printer || m_printed)
        return done(false);
    m_printed = std::move(done);
    if (printer->outputFormat() == QPrinter::PdfFormat && !printer->outputFileName().isEmpty()) {
        const auto write = [this, path = printer->outputFileName()](const QByteArray &pdf) {
            QFile file(path);
            // Complete files end like this; whoever waits for it looks.
            const QByteArray whole = pdf.trimmed() + '\n';
            endPrinting(!pdf.isEmpty() && file.open(QIODevice::WriteOnly) &&
                        file.write(whole) == whole.size() && file.flush());
        };
        page()->printToPdf(write, printer->pageLayout(), printer->pageRanges());
        return;
    }
    printer->setResolution(printResolution); // the page comes as a picture
    QWebEngineView::print(printer);
}

void EngineView::endPrinting(bool ok)
{
    if (const auto done = std::exchange(m_printed, nullptr))
        done(ok);
}

void EngineView::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu *menu = createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    // What needs other windows, or writes files that nobody asked the place of.
    for (const auto needless :
         {QWebEnginePage::OpenLinkInNewWindow, QWebEnginePage::OpenLinkInNewTab, QWebEnginePage::SavePage,
          QWebEnginePage::ViewSource, QWebEnginePage::DownloadLinkToDisk, QWebEnginePage::DownloadImageToDisk,
          QWebEnginePage::DownloadMediaToDisk})
        menu->removeAction(page()->action(needless));
    menu->popup(event->globalPos());
}

void EngineView::tell(const std::function<void()> &event) const
{
    if (event)
        event();
}
