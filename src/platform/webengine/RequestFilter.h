#pragma once

#include <QWebEngineUrlRequestInterceptor>

/// Stands between a page and the network: what a page of this machine contains is never fetched from there,
/// and what a page of the network contains never from this machine. Whole pages pass; EnginePage decides
/// about them.
class RequestFilter : public QWebEngineUrlRequestInterceptor
{
    Q_OBJECT

public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    void interceptRequest(QWebEngineUrlRequestInfo &request) override;
};
