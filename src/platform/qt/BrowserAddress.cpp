#include "platform/qt/BrowserAddress.h"

#include <QDir>
#include <QFileInfo>
#include <QMimeDatabase>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString fileScheme = u"file"_s;

bool isPageType(const QMimeType &type)
{
    return type.inherits(u"text/plain"_s) || type.inherits(u"text/html"_s) ||
           type.inherits(u"application/xml"_s) || type.name().startsWith("image/"_L1);
}

/// Files that guides link to beside their pages. Others might be programs.
bool isDocumentType(const QString &suffix)
{
    static const QStringList suffixes{u"pdf"_s, u"doc"_s, u"docx"_s, u"odt"_s, u"rtf"_s};
    return suffixes.contains(suffix, Qt::CaseInsensitive);
}

BrowserAddress::Check refused(const QString &reason)
{
    return {BrowserAddress::Kind::Refused, reason};
}

BrowserAddress::Check checkFile(const QUrl &address)
{
    if (!address.host().isEmpty())
        return refused(u"It names a file of another machine."_s);
    const QFileInfo file(address.toLocalFile());
    if (!file.exists())
        return refused(u"There is no such file."_s);
    if (file.isDir())
        return refused(u"It is a folder, not a page."_s);
    if (!file.isFile())
        return refused(u"It is not a file."_s);
    if (!file.isReadable())
        return refused(u"You have no permission to read this file."_s);
    if (isDocumentType(file.suffix()))
        return {BrowserAddress::Kind::Document, {}};
    if (!isPageType(QMimeDatabase().mimeTypeForFile(file, QMimeDatabase::MatchExtension)))
        return refused(u"Files of this kind cannot be shown here."_s);
    return {};
}
} // namespace

QUrl BrowserAddress::understand(const QString &text)
{
    const QString typed = text.trimmed();
    if (typed.startsWith(u'/'))
        return QUrl::fromLocalFile(QDir::cleanPath(typed));
    if (typed.startsWith("~/"_L1))
        return QUrl::fromLocalFile(QDir::cleanPath(QDir::homePath() + typed.mid(1)));
    if (typed.contains(u' ') && !typed.contains("://"_L1))
        return {}; // words, not an address
    QUrl address = QUrl::fromUserInput(typed);
    if (isOfNetwork(address) && address.host().isEmpty())
        return {};
    if (address.scheme() == fileScheme)
        address.setPath(QDir::cleanPath(address.path()));
    return address;
}

QString BrowserAddress::shown(const QUrl &address)
{
    return address.toString(QUrl::PrettyDecoded);
}

QString BrowserAddress::forDesktop(const QString &address)
{
    const QUrl url = understand(address);
    return url.isLocalFile() ? url.toLocalFile() : url.toString(QUrl::FullyEncoded);
}

bool BrowserAddress::isOfNetwork(const QUrl &address)
{
    return address.scheme() == "http"_L1 || address.scheme() == "https"_L1;
}

BrowserAddress::Check BrowserAddress::check(const QUrl &address)
{
    if (!address.isValid() || address.isEmpty())
        return refused(u"This is not an address."_s);
    if (address.scheme() == fileScheme)
        return checkFile(address);
    if (isOfNetwork(address) || address == QUrl(u"about:blank"_s))
        return {};
    return refused(u"Addresses that begin with \"%1:\" cannot be shown here."_s.arg(address.scheme()));
}

bool BrowserAddress::mayReachNetwork(const QUrl &page, const QUrl &initiator)
{
    return isOfNetwork(page) || isOfNetwork(initiator);
}
