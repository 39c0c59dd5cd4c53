#include "platform/webengine/EnginePage.h"

#include "platform/qt/BrowserAddress.h"
#include "platform/webengine/RequestFilter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QWebEngineDownloadRequest>
#include <QWebEngineLoadingInfo>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Numbers of the engine's network errors.
enum NetError {
    Aborted = -3,
    TimedOut = -7,
    ConnectionRefused = -102,
    NameNotResolved = -105,
    Disconnected = -106,
    AddressUnreachable = -109,
    ConnectionTimedOut = -118,
    NameResolutionFailed = -137,
    LastCertificateError = -299,
    FirstCertificateError = -200
};

/// Pictures are printed as wide as the paper at most. Scripts of the program run where those of pages do not.
QWebEngineScript printStyle()
{
    QWebEngineScript script;
    script.setName(u"print style"_s);
    script.setInjectionPoint(QWebEngineScript::DocumentReady);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setSourceCode(u"const style = document.createElement('style'); style.media = 'print';"
                         "style.textContent = 'img { max-width: 100% !important; height: auto !important }';"
                         "document.documentElement.appendChild(style);"_s);
    return script;
}

QString reasonOf(int error, const QString &name)
{
    switch (error) {
    case NameNotResolved:
    case NameResolutionFailed:
        return u"There is no host of this name, or there is no connection to the network."_s;
    case ConnectionRefused:
        return u"The host does not accept the connection."_s;
    case TimedOut:
    case ConnectionTimedOut:
        return u"The host does not answer."_s;
    case Disconnected:
    case AddressUnreachable:
        return u"The host cannot be reached. Is there a connection to the network?"_s;
    default:
        if (error <= FirstCertificateError && error >= LastCertificateError)
            return u"This site cannot prove that it is what it says, so it is not shown (%1)."_s.arg(name);
        return u"The page cannot be loaded (%1)."_s.arg(name.isEmpty() ? QString::number(error) : name);
    }
}
} // namespace

EnginePage::EnginePage(QWebEngineProfile &profile, const BrowserView::Events &events)
    : QWebEnginePage(&profile), m_events(events), m_filter(new RequestFilter(this))
{
    QWebEngineSettings &rules = *settings();
    rules.setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, false);
    rules.setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, false);
    rules.setAttribute(QWebEngineSettings::AllowRunningInsecureContent, false);
    rules.setAttribute(QWebEngineSettings::AutoLoadIconsForPage, false);
    rules.setAttribute(QWebEngineSettings::DnsPrefetchEnabled, false);
    rules.setAttribute(QWebEngineSettings::HyperlinkAuditingEnabled, false);
    rules.setAttribute(QWebEngineSettings::PluginsEnabled, false);
    rules.setAttribute(QWebEngineSettings::PdfViewerEnabled, false);
    rules.setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
    setRules(false);
    scripts().insert(printStyle());
    setUrlRequestInterceptor(m_filter);

    connect(this, &QWebEnginePage::loadingChanged, this, &EnginePage::loadingChanged);
    connect(this, &QWebEnginePage::urlChanged, this, &EnginePage::followPlace);
    connect(this, &QWebEnginePage::newWindowRequested, this, &EnginePage::openWindow);
    connect(this, &QWebEnginePage::featurePermissionRequested, this,
            [this](const QUrl &origin, Feature feature) {
                setFeaturePermission(origin, feature, PermissionDeniedByUser);
            });
    connect(this, &QWebEnginePage::renderProcessTerminated, this,
            [this](RenderProcessTerminationStatus status) {
                if (status == NormalTerminationStatus)
                    return;
                Q_EMIT ended(false);
                fail(m_shown.isEmpty() ? url() : m_shown, u"The page has ended unexpectedly."_s,
                     BrowserProblem::Offer::Reload);
            });
    connect(&profile, &QWebEngineProfile::downloadRequested, this, &EnginePage::download);
}

bool EnginePage::acceptNavigationRequest(const QUrl &address, NavigationType type, bool isMainFrame)
{
    if (!isMainFrame) // the filter decides
        return true;
    if (!mayBecomePage(address, type))
        return false;
    const bool toNetwork = BrowserAddress::isOfNetwork(address);
    m_leavingMachine = toNetwork && !m_onNetwork;
    m_onNetwork = toNetwork && m_onNetwork;
    setRules(toNetwork);
    return true;
}

/// Until the page of the network is there, the one before it is seen; its scripts may run then, but they find
/// nothing of this machine.
void EnginePage::setRules(bool forNetwork)
{
    settings()->setAttribute(QWebEngineSettings::JavascriptEnabled, forNetwork);
    settings()->setAttribute(QWebEngineSettings::LocalContentCanAccessFileUrls, !forNetwork);
}

bool EnginePage::mayBecomePage(const QUrl &address, NavigationType type)
{
    const bool toNetwork = BrowserAddress::isOfNetwork(address);
    const bool byUser =
        type == NavigationTypeTyped || type == NavigationTypeBackForward || type == NavigationTypeReload;
    const bool byClick = type == NavigationTypeLinkClicked || type == NavigationTypeFormSubmitted;
    if (m_onNetwork && !toNetwork && !byUser)
        return false;
    if (!m_onNetwork && toNetwork && !byUser && !byClick &&
        !(m_leavingMachine && type == NavigationTypeRedirect))
        return false;
    const BrowserAddress::Check check = BrowserAddress::check(address);
    switch (check.kind) {
    case BrowserAddress::Kind::Page:
        return true;
    case BrowserAddress::Kind::Document:
        if (m_events.openOutside && (byUser || byClick))
            m_events.openOutside(BrowserAddress::shown(address));
        return false;
    case BrowserAddress::Kind::Refused:
        if (byUser || byClick)
            fail(address, check.reason, BrowserProblem::Offer::None);
        return false;
    }
    return false;
}

void EnginePage::loadingChanged(const QWebEngineLoadingInfo &info)
{
    if (info.status() == QWebEngineLoadingInfo::LoadStartedStatus) {
        Q_EMIT begun();
        return;
    }
    // What a host answers is a page, whatever the answer is.
    const bool arrived = info.status() == QWebEngineLoadingInfo::LoadSucceededStatus ||
                         (info.status() == QWebEngineLoadingInfo::LoadFailedStatus &&
                          info.errorDomain() == QWebEngineLoadingInfo::HttpStatusCodeDomain);
    if (arrived) {
        m_shown = info.url();
        m_onNetwork = BrowserAddress::isOfNetwork(m_shown);
    }
    // A page that was asked for and has not come leaves the one that was there.
    m_leavingMachine = false;
    setRules(m_onNetwork);
    Q_EMIT ended(arrived);
    if (!arrived && info.status() == QWebEngineLoadingInfo::LoadFailedStatus && info.errorCode() != Aborted)
        fail(info.url(), reasonOf(info.errorCode(), info.errorString()), BrowserProblem::Offer::Reload);
}

/// Pages change their address without loading when a place on them is gone to, those of the network also by
/// script.
void EnginePage::followPlace(const QUrl &address)
{
    const bool samePage = address.matches(m_shown, QUrl::RemoveFragment);
    const bool byScript = m_onNetwork && !isLoading() && address.host() == m_shown.host();
    if (address == m_shown || !(samePage || byScript))
        return;
    m_shown = address;
    Q_EMIT placeChanged();
}

/// There are no other windows: what the user opens comes into this one.
void EnginePage::openWindow(QWebEngineNewWindowRequest &request)
{
    const QUrl address = request.requestedUrl();
    if (request.isUserInitiated() && (!m_onNetwork || BrowserAddress::isOfNetwork(address)))
        load(address);
}

/// Written under another name first: a file of the user is replaced when the new one is complete.
void EnginePage::download(QWebEngineDownloadRequest *request)
{
    const auto path = m_events.askDownload ? m_events.askDownload(request->downloadFileName()) : std::nullopt;
    if (!path)
        return request->cancel();
    const QFileInfo target(*path);
    const QString partial = target.absoluteDir().filePath(u".%1.part"_s.arg(target.fileName()));
    request->setDownloadDirectory(target.absolutePath());
    request->setDownloadFileName(QFileInfo(partial).fileName());
    connect(request, &QWebEngineDownloadRequest::isFinishedChanged, this, [this, request, path, partial] {
        const bool complete =
            request->state() == QWebEngineDownloadRequest::DownloadCompleted &&
            std::rename(QFile::encodeName(partial).constData(), QFile::encodeName(*path).constData()) == 0;
        if (!complete)
            QFile::remove(partial);
        if (m_events.report)
            m_events.report(
                complete ? u"Saved: "_s + *path
                         : u"%1 could not be saved: %2"_s.arg(*path, request->interruptReasonString()));
    });
    request->accept();
}

void EnginePage::fail(const QUrl &address, const QString &reason, BrowserProblem::Offer offer)
{
    if (m_events.failed)
        m_events.failed({BrowserAddress::shown(address), reason, offer});
}
