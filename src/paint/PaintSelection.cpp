#include "paint/PaintPicture.h"

#include "platform/ImageFile.h"

#include <QPainter>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int longestSide = 32'767; // pixels that QPainter draws on

/// Format_RGB32; what is transparent shows the white of a page.
QImage plain(const QImage &picture)
{
    QImage result = picture;
    if (picture.hasAlphaChannel()) {
        result = QImage(picture.size(), QImage::Format_RGB32);
        result.fill(Qt::white);
        QPainter(&result).drawImage(result.rect(), picture);
    } else if (picture.format() != QImage::Format_RGB32) {
        result = picture.convertToFormat(QImage::Format_RGB32);
    }
    result.setDevicePixelRatio(1);
    return result;
}

void paintOver(QImage &picture, QPoint at, const QImage &other)
{
    QPainter(&picture).drawImage(at, other);
}
} // namespace

bool PaintPicture::isPossible(QSize size)
{
    return std::max(size.width(), size.height()) <= longestSide && !ImageFile::isTooLarge(size);
}

void PaintPicture::tellTooLarge(QSize size)
{
    m_services.prompter.tell(
        Question::PaintTooLarge,
        {u"A picture of %1 x %2 pixels is too large."_s.arg(size.width()).arg(size.height()), u"Easel"_s,
         Icon::Exclamation});
}

QImage PaintPicture::flattened() const
{
    QImage result = m_image;
    if (m_selection.floats())
        paintOver(result, m_selection.place.topLeft(), m_selection.picture);
    return result;
}

QImage PaintPicture::selectedPicture() const
{
    return m_selection.floats() ? m_selection.picture : m_image.copy(m_selection.place);
}

// ---- selection

void PaintPicture::select(const QRect &box)
{
    commitSelection();
    const QRect place = box & m_image.rect();
    if (!place.isEmpty())
        m_selection.place = place;
}

void PaintPicture::leavePlace()
{
    QPainter(&m_image).fillRect(m_selection.place, m_services.settings.fill);
}

void PaintPicture::lift(bool leaveCopy)
{
    if (!m_selection.exists())
        return;
    if (m_selection.floats()) {
        if (leaveCopy && m_unsettled) {
            m_image = flattened();
            SetImageBuffer();
            m_unsettled = false;
        }
        return;
    }
    m_selection.picture = selectedPicture();
    if (!leaveCopy) {
        leavePlace();
        m_unsettled = true;
    }
}

void PaintPicture::moveSelection(QPoint topLeft)
{
    if (!m_selection.floats() || m_selection.place.topLeft() == topLeft)
        return;
    m_selection.place.moveTopLeft(topLeft);
    m_unsettled = true;
}

/// A floating selection becomes part of the history, but goes on floating.
void PaintPicture::settle()
{
    if (m_selection.floats() && m_unsettled)
        pushEntry(flattened());
    m_unsettled = false;
}

void PaintPicture::commitSelection()
{
    const bool entry = m_unsettled;
    m_image = flattened();
    m_selection = {};
    m_unsettled = false;
    if (entry)
        SetImageBuffer();
}

void PaintPicture::dropSelection()
{
    if (m_selection.floats())
        revert();
    m_selection = {};
    m_unsettled = false;
}

// ---- edit commands

void PaintPicture::Copy()
{
    finishTools();
    m_clipboard = m_selection.exists() ? selectedPicture() : m_image;
}

bool PaintPicture::Cut()
{
    if (!m_selection.exists())
        return false;
    Copy();
    return Delete();
}

void PaintPicture::Paste(const QImage &picture, QPoint at)
{
    if (picture.isNull())
        return;
    if (!isPossible(picture.size()))
        return tellTooLarge(picture.size());
    finishPending();
    m_selection.picture = plain(picture);
    m_selection.place = QRect(at, picture.size());
    m_unsettled = true;
}

bool PaintPicture::Delete()
{
    if (!m_selection.exists())
        return false;
    finishTools();
    settle();
    if (!m_selection.floats())
        leavePlace();
    m_selection = {};
    SetImageBuffer();
    return true;
}

bool PaintPicture::Crop()
{
    if (!m_selection.exists())
        return false;
    finishTools();
    settle();
    m_image = selectedPicture();
    m_selection = {};
    SetImageBuffer();
    return true;
}

void PaintPicture::Clear()
{
    finishPending();
    m_image.fill(m_services.settings.fill);
    SetImageBuffer();
}

bool PaintPicture::resizeCanvas(const QSize &size)
{
    finishPending();
    if (size.isEmpty() || size == m_image.size())
        return false;
    if (!isPossible(size)) {
        tellTooLarge(size);
        return false;
    }
    QImage result(size, QImage::Format_RGB32);
    if (result.isNull())
        return false;
    result.fill(m_services.settings.fill);
    paintOver(result, {}, m_image);
    m_image = result;
    SetImageBuffer();
    return true;
}

bool PaintPicture::apply(const std::function<QImage(const QImage &)> &effect,
                         const std::function<QSize(QSize)> &growth)
{
    finishTools();
    const bool part = m_selection.exists();
    const QImage source = part ? selectedPicture() : m_image;
    const QSize grown = growth ? growth(source.size()) : source.size();
    if (!isPossible(grown)) {
        tellTooLarge(grown);
        return false;
    }
    const QImage result = plain(effect(source));
    if (result.isNull())
        return false;
    if (!part) {
        m_image = result;
        SetImageBuffer();
        return true;
    }
    settle();
    if (!m_selection.floats())
        leavePlace();
    m_selection.picture = result;
    m_selection.place.setSize(result.size());
    pushEntry(flattened());
    return true;
}
