#pragma once

#include "platform/BrowserView.h"

#include <QTextBrowser>

/// A view without an engine of its own: plain HTML of this machine. What is of the network is handed to the
/// desktop's browser, links by a click, addresses by an offer.
class TextBrowserView : public QTextBrowser, public BrowserView
{
    Q_OBJECT

public:
    TextBrowserView();

    QWidget *widget() override { return this; }
    void setEvents(Events events) override { m_events = std::move(events); }

    void Navigate(const QString &address) override;
    void GoBack() override { backward(); }
    void GoForward() override { forward(); }
    void Refresh() override { reload(); }
    void Stop() override {} // a page is there at once

    bool Busy() const override { return false; }
    QString LocationURL() const override;
    QString title() const override { return documentTitle(); }
    bool canGoBack() const override { return isBackwardAvailable(); }
    bool canGoForward() const override { return isForwardAvailable(); }
    void print(QPagedPaintDevice &device, std::function<void(bool)> done) override;

    QVariant loadResource(int type, const QUrl &name) override;

private:
    void open(const QUrl &address, bool clicked);

    Events m_events;
    QUrl m_address;
    QUrl m_base; ///< of the page that is being read; source() is still the one before then
};
