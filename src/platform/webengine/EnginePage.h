#pragma once

#include "platform/BrowserView.h"

#include <QWebEnginePage>

class QWebEngineDownloadRequest;
class QWebEngineLoadingInfo;
class QWebEngineNewWindowRequest;
class RequestFilter;

/// A page of the engine with the rules of BrowserView: scripts run on pages of the network alone, and a page
/// of this machine leads there by a click only.
class EnginePage : public QWebEnginePage
{
    Q_OBJECT

public:
    /// `events` are the view's own; both it and `profile`, which is for this page alone, must outlive the
    /// page.
    EnginePage(QWebEngineProfile &profile, const BrowserView::Events &events);

    /// The address of the page that is seen. url() may be that of one which is asked for, or was.
    QUrl shownAddress() const { return m_shown; }

Q_SIGNALS:
    void begun();             ///< a page is on its way
    void ended(bool arrived); ///< it is there, and shownAddress() is its address; or something else is seen
    void placeChanged();      ///< shownAddress() is another place on the same page

protected:
    bool acceptNavigationRequest(const QUrl &address, NavigationType type, bool isMainFrame) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &, int,
                                  const QString &) override
    {
    }

private:
    bool mayBecomePage(const QUrl &address, NavigationType type);
    void setRules(bool forNetwork);
    void loadingChanged(const QWebEngineLoadingInfo &info);
    void followPlace(const QUrl &address);
    void openWindow(QWebEngineNewWindowRequest &request);
    void download(QWebEngineDownloadRequest *request);
    void fail(const QUrl &address, const QString &reason, BrowserProblem::Offer offer);

    const BrowserView::Events &m_events;
    RequestFilter *m_filter;
    QUrl m_shown;
    bool m_onNetwork = false;      ///< the page that is seen is certainly of the network
    bool m_leavingMachine = false; ///< the user is on the way from a page of this machine to the network
};
