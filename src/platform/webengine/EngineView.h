#pragma once

#include "platform/BrowserView.h"

#include <QWebEngineProfile>
#include <QWebEngineView>

class EnginePage;

/// A view of the web engine. It remembers nothing on disk: neither cookies nor pages.
class EngineView : public QWebEngineView, public BrowserView
{
    Q_OBJECT

public:
    EngineView();
    ~EngineView() override;

    QWidget *widget() override { return this; }
    void setEvents(Events events) override { m_events = std::move(events); }

    void Navigate(const QString &address) override;
    void GoBack() override { back(); }
    void GoForward() override { forward(); }
    void Refresh() override { reload(); }
    void Stop() override;

    bool Busy() const override;
    QString LocationURL() const override;
    QString title() const override { return QWebEngineView::title(); }
    bool canGoBack() const override;
    bool canGoForward() const override;
    void print(QPagedPaintDevice &device, std::function<void(bool)> done) override;

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void endPrinting(bool ok);
    void tell(const std::function<void()> &event) const;

    Events m_events;
    QWebEngineProfile m_profile;
    std::unique_ptr<EnginePage> m_page;
    std::function<void(bool)> m_printed; ///< while something is printed
    bool m_busy = false;
    bool m_hadFocus = false; ///< when the page began to load
};
