#include "platform/webengine/RequestFilter.h"

#include "platform/qt/BrowserAddress.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
/// Schemes whose content lies in the page itself.
bool isInPage(const QUrl &address)
{
    return address.scheme() == "data"_L1 || address.scheme() == "blob"_L1 || address.scheme() == "about"_L1;
}
} // namespace

void RequestFilter::interceptRequest(QWebEngineUrlRequestInfo &request)
{
    const QUrl address = request.requestUrl();
    if (request.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame || isInPage(address))
        return;
    const bool ofNetwork = BrowserAddress::mayReachNetwork(request.firstPartyUrl(), request.initiator());
    const bool local = address.scheme() == "file"_L1;
    request.block(local == ofNetwork);
}
