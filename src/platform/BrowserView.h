#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <optional>

class QPagedPaintDevice;
class QWidget;

/// Why there is no page to be seen, and what the user can do about it.
struct BrowserProblem {
    enum class Offer {
        None,
        Reload,     ///< it may work the next time
        OpenOutside ///< the desktop's own program can show it
    };
    QString address;
    QString text;
    Offer offer = Offer::None;
};

/// A view of web pages: those of this machine and, where the engine can, those of the network.
///
/// Pages of this machine are generated or delivered, but what stands in them was typed by somebody: they run
/// no script, and nothing of them reaches the network unless the user clicks on a link.
///
/// An address is what a user types: a path, "file:///..." or an address of the network.
class BrowserView
{
public:
    /// What the view tells its owner; functions that are empty are left out.
    struct Events {
        std::function<void()> navigateComplete; ///< the page is there, and LocationURL() is its address
        std::function<void()> changed;          ///< Busy(), title() or what GoBack() can do may have changed
        std::function<void(const BrowserProblem &)> failed;
        std::function<void(const QString &)> openOutside; ///< the user chose what no view can show
        /// Where a file that is offered under this name shall go; nothing: nowhere.
        std::function<std::optional<QString>(const QString &)> askDownload;
        std::function<void(const QString &)> report; ///< a line about what has been done
    };

    virtual ~BrowserView() = default;

    /// The widget that shows the pages; it belongs to the view.
    virtual QWidget *widget() = 0;
    virtual void setEvents(Events events) = 0;

    virtual void Navigate(const QString &address) = 0;
    virtual void GoBack() = 0;
    virtual void GoForward() = 0;
    /// Reads the page again.
    virtual void Refresh() = 0;
    virtual void Stop() = 0;
    void GoHome() { Navigate(m_home); }
    void GoSearch() { Navigate(m_search); }
    void setStartPages(const QString &home, const QString &search)
    {
        m_home = home;
        m_search = search;
    }

    virtual bool Busy() const = 0;
    /// In a form to be read and typed again; empty before the first page.
    virtual QString LocationURL() const = 0;
    virtual QString title() const = 0;
    virtual bool canGoBack() const = 0;
    virtual bool canGoForward() const = 0;

    /// Prints the page, as wide as the paper at most. `done` is called when the device has everything, with
    /// false when it could not be printed; the device must last until then.
    virtual void print(QPagedPaintDevice &device, std::function<void(bool)> done) = 0;

private:
    QString m_home;
    QString m_search;
};

/// Makes views, each of the best engine that there is.
class Browsers
{
public:
    virtual ~Browsers() = default;
    virtual std::unique_ptr<BrowserView> make() = 0;
};
