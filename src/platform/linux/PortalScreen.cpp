#include "platform/linux/PortalScreen.h"

#include "platform/ImageFile.h"
#include "platform/linux/ScreenshotPortal.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace
{
bool isInside(const QString &canonicalFolder, const QString &canonicalParent)
{
    return canonicalFolder == canonicalParent || canonicalFolder.startsWith(canonicalParent + u'/');
}

/// A folder for temporary files that holds the user's home as well says nothing about a file.
bool isTemporary(const QString &path)
{
    const QString temporary = QDir(QDir::tempPath()).canonicalPath();
    return !temporary.isEmpty() && isInside(QFileInfo(path).canonicalPath(), temporary) &&
           !isInside(QDir::home().canonicalPath(), temporary);
}
} // namespace

PortalScreen::PortalScreen(std::unique_ptr<Screen> display, std::chrono::milliseconds limit)
    : m_display(std::move(display)), m_limit(limit)
{
}

QRect PortalScreen::desktop() const
{
    return m_pictureSize.isEmpty() ? m_display->desktop() : QRect(QPoint(0, 0), m_pictureSize);
}

QImage PortalScreen::grab(const QRect &area)
{
    // Without an X server nothing is known before the first picture.
    const QRect known = desktop();
    const bool everything = known.isEmpty() || area.contains(known);
    if (!everything && !area.intersects(known))
        return {};
    const QString path = ScreenshotPortal::takePicture(m_limit);
    QImage picture = ImageFile::load(path);
    if (isTemporary(path))
        QFile::remove(path);
    m_pictureSize = picture.size();
    if (everything)
        return picture;
    const QRect visible = area & picture.rect();
    return visible.isEmpty() ? QImage() : picture.copy(visible);
}

void PortalScreen::waitUntilMinimised(std::uint32_t window, int limitMilliseconds)
{
    m_display->waitUntilMinimised(window, limitMilliseconds);
}
