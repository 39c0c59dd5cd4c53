#pragma once

#include "platform/BrowserView.h"

#include <QStringList>
#include <QWidget>

#include <utility>

/// A view that loads as the test says, and remembers what it was asked for.
class FakeBrowserView : public QWidget, public BrowserView
{
public:
    explicit FakeBrowserView(QStringList &calls) : m_calls(calls) {}

    Events events;
    bool busy = false;
    bool back = false;
    bool forward = false;
    QString address;

    /// The page is there.
    void complete(const QString &location)
    {
        busy = false;
        address = location;
        events.navigateComplete();
        events.changed();
    }

    QWidget *widget() override { return this; }
    void setEvents(Events given) override { events = std::move(given); }
    void Navigate(const QString &wanted) override
    {
        m_calls += wanted;
        load();
    }
    void GoBack() override { note(QStringLiteral("GoBack")); }
    void GoForward() override { note(QStringLiteral("GoForward")); }
    void Refresh() override { note(QStringLiteral("Refresh")); }
    void Stop() override
    {
        m_calls += QStringLiteral("Stop");
        busy = false;
    }
    bool Busy() const override { return busy; }
    QString LocationURL() const override { return address; }
    QString title() const override { return QStringLiteral("Title"); }
    bool canGoBack() const override { return back; }
    bool canGoForward() const override { return forward; }
    void print(QPagedPaintDevice &, std::function<void(bool)> done) override
    {
        m_calls += QStringLiteral("print");
        printed = std::move(done);
    }
    std::function<void(bool)> printed;

private:
    void note(const QString &call)
    {
        m_calls += call;
        load();
    }
    void load()
    {
        busy = true;
        events.changed();
    }

    QStringList &m_calls;
};

class FakeBrowsers : public Browsers
{
public:
    QStringList calls;               ///< of all views: addresses, "GoBack", "Stop", ...
    FakeBrowserView *last = nullptr; ///< the view made last

    std::unique_ptr<BrowserView> make() override
    {
        auto view = std::make_unique<FakeBrowserView>(calls);
        last = view.get();
        return view;
    }
};
