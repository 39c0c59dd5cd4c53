#include "platform/qt/TextBrowserView.h"

#include "platform/qt/BrowserAddress.h"

#include <QFile>
#include <QImageReader>
#include <QPagedPaintDevice>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QTextBlock>

#include <algorithm>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr qint64 largestPage = 32 << 20; // bytes
constexpr double margin = 12;            // pixels
constexpr double pictureShare = 0.9;     // of the paper, beside margins and the cells of a page's table
constexpr qsizetype declaration = 1024;  // bytes in which a page says how it is encoded

/// As browsers read it: UTF-8 where the page says so, else Windows-1252, which ISO-8859-1 stands for as well.
QString decoded(const QByteArray &page)
{
    static const QRegularExpression charset(u"charset\\s*=\\s*[\"']?\\s*([\\w-]+)"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    const QString head = QString::fromLatin1(page.first(std::min(page.size(), declaration)));
    const bool utf8 = page.startsWith("\xEF\xBB\xBF") ||
                      charset.match(head).captured(1).compare("utf-8"_L1, Qt::CaseInsensitive) == 0;
    if (const auto unicode = QStringConverter::encodingForData(page); unicode && !utf8)
        return QStringDecoder(*unicode).decode(page);
    QStringDecoder decoder(utf8 ? "utf-8" : "windows-1252");
    return decoder.isValid() ? decoder.decode(page) : QString::fromLatin1(page);
}

/// Pictures that are larger than `limit` are made to fit into it.
void fitPictures(QTextDocument &document, QSizeF limit)
{
    QTextCursor cursor(&document);
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        std::vector<QTextFragment> parts;
        for (auto part = block.begin(); part != block.end(); ++part) {
            if (part.fragment().charFormat().isImageFormat())
                parts.push_back(part.fragment());
        }
        for (const QTextFragment &part : parts) {
            QTextImageFormat format = part.charFormat().toImageFormat();
            const QImage picture =
                document.resource(QTextDocument::ImageResource, QUrl(format.name())).value<QImage>();
            QSizeF size = picture.size();
            if (format.hasProperty(QTextFormat::ImageWidth))
                size.scale(format.width(), size.height() * format.width(), Qt::KeepAspectRatio);
            if (format.hasProperty(QTextFormat::ImageHeight))
                size.setHeight(format.height());
            if (size.width() <= limit.width() && size.height() <= limit.height())
                continue;
            size.scale(limit, Qt::KeepAspectRatio);
            format.setWidth(size.width());
            format.setHeight(size.height());
            cursor.setPosition(part.position());
            cursor.setPosition(part.position() + part.length(), QTextCursor::KeepAnchor);
            cursor.setCharFormat(format);
        }
    }
}
} // namespace

TextBrowserView::TextBrowserView()
{
    setOpenLinks(false);
    setFrameShape(QFrame::NoFrame);
    // Pages are written for white paper, whatever the desktop's colours are.
    QPalette paper = palette();
    paper.setColor(QPalette::Base, Qt::white);
    paper.setColor(QPalette::Text, Qt::black);
    setPalette(paper);
    document()->setDefaultStyleSheet(u"a:link { color: #0000ee; }"_s); // no palette of a widget serves links
    connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl &link) { open(link, true); });
    document()->setDocumentMargin(margin);
    connect(this, &QTextBrowser::sourceChanged, this, [this](const QUrl &address) {
        m_address = address;
        if (m_events.navigateComplete)
            m_events.navigateComplete();
    });
    connect(this, &QTextBrowser::historyChanged, this, [this] {
        if (m_events.changed)
            m_events.changed();
    });
}

void TextBrowserView::Navigate(const QString &address)
{
    open(BrowserAddress::understand(address), false);
}

void TextBrowserView::open(const QUrl &address, bool clicked)
{
    const auto fail = [&](const QString &reason, BrowserProblem::Offer offer) {
        if (m_events.failed)
            m_events.failed({BrowserAddress::shown(address), reason, offer});
    };
    const BrowserAddress::Check check = BrowserAddress::check(address);
    if (check.kind == BrowserAddress::Kind::Refused)
        return fail(check.reason, BrowserProblem::Offer::None);
    const bool network = BrowserAddress::isOfNetwork(address);
    if (check.kind == BrowserAddress::Kind::Document || (network && clicked)) {
        if (m_events.openOutside)
            m_events.openOutside(BrowserAddress::shown(address));
        return;
    }
    if (network)
        return fail(u"Pages of the network are shown by your system's browser."_s,
                    BrowserProblem::Offer::OpenOutside);
    if (QFile(address.toLocalFile()).size() > largestPage)
        return fail(u"The page is too large to be shown here."_s, BrowserProblem::Offer::OpenOutside);
    if (address == m_address)
        reload();
    else
        setSource(address);
}

QString TextBrowserView::LocationURL() const
{
    return BrowserAddress::shown(m_address);
}

QVariant TextBrowserView::loadResource(int type, const QUrl &name)
{
    if (type == QTextDocument::HtmlResource)
        m_base = name;
    const QUrl resource = m_base.resolved(name);
    // QUrl::isLocalFile() says yes to hosts as well.
    if (resource.scheme() != "file"_L1 || !resource.host().isEmpty())
        return {};
    const QString path = resource.toLocalFile();
    if (type == QTextDocument::ImageResource)
        return QImage(path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    if (type != QTextDocument::HtmlResource)
        return file.read(largestPage);
    if (!QImageReader::imageFormat(path).isEmpty())
        return u"<img src=\"%1\">"_s.arg(resource.toString(QUrl::FullyEncoded).toHtmlEscaped());
    return decoded(file.read(largestPage));
}

void TextBrowserView::print(QPagedPaintDevice &device, std::function<void(bool)> done)
{
    // A child of the page's document finds its pictures.
    const std::unique_ptr<QTextDocument> copy(document()->clone(document()));
    const QSizeF paper = device.pageLayout().paintRect(QPageLayout::Inch).size() * logicalDpiX();
    copy->setPageSize(paper);
    fitPictures(*copy, paper * pictureShare);
    copy->print(&device);
    done(true);
}
