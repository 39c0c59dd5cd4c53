#pragma once

#include <QString>
#include <QUrl>

#include <optional>

/// Addresses of pages: what the user types, and what a view may do with an address.
namespace BrowserAddress
{
/// The address that the user means; an invalid one when the text is none. Paths (absolute, or from "~/") mean
/// files, "example.com/x" a host of the network.
QUrl understand(const QString &text);

/// In a form that can be read and that understand() takes back.
QString shown(const QUrl &address);

/// What ExternalPrograms::openWithDesktop() takes for it: a path, or an address of the network.
QString forDesktop(const QString &address);

/// http or https.
bool isOfNetwork(const QUrl &address);

enum class Kind {
    Page,     ///< a view can show it
    Document, ///< a file for another program
    Refused
};
struct Check {
    Kind kind = Kind::Page;
    QString reason; ///< why it is refused
};
/// What a view shall do with an address. Looks at files, not at the network.
Check check(const QUrl &address);

/// May a page ask the network for a part of itself? Only a page of the network may. `page` is what the
/// window shows, `initiator` the origin of the frame that asks; either may be unknown.
bool mayReachNetwork(const QUrl &page, const QUrl &initiator);
} // namespace BrowserAddress
