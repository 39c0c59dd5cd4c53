// The page editor: what is shown, and what happens in the boxes.

#include "pagestore/frmPageData1.h"

#include "pagestore/Statements.h"
#include "platform/ImageFile.h"
#include "platform/ShortDate.h"
#include "ui_frmPageData1.h"

using namespace Qt::Literals::StringLiterals;
using namespace PageFields;

namespace
{
constexpr qsizetype shownInput = 1000; // characters of a text that is too long

bool isPath(Index index)
{
    return index == ScreenShotFilePath || index == HTMLFilePath || index == WordFilePath;
}
} // namespace

// ---- what is shown

void frmPageData1::SetButtons(bool browsing)
{
    m_ui->cmdAdd->setVisible(browsing);
    m_ui->cmdUpdate->setVisible(!browsing);
    m_ui->cmdCancel->setVisible(!browsing);
    m_ui->cmdDelete->setVisible(browsing);
    m_ui->cmdRefresh->setVisible(browsing);
    for (QToolButton *button : {m_ui->cmdFirst, m_ui->cmdPrevious, m_ui->cmdNext, m_ui->cmdLast})
        button->setEnabled(browsing);
}

void frmPageData1::UpdateNavigation()
{
    const bool rows = PrimaryCLS->OpenRecordCount != 0;
    m_ui->cmdDelete->setEnabled(rows);
    m_ui->cmdEdit->setEnabled(rows);
    for (QToolButton *button : {m_ui->cmdFirst, m_ui->cmdPrevious, m_ui->cmdNext, m_ui->cmdLast})
        button->setEnabled(rows);
}

void frmPageData1::showStatus()
{
    m_ui->lblStatus->setText(
        u"%1 of %2 Record(s)"_s.arg(PrimaryCLS->AbsolutePosition()).arg(m_services.state.EditorRecordCount));
}

/// The text of a column as it is kept. The path of the HTML page is not among the columns of every opener.
QString frmPageData1::storedText(Box index) const
{
    const EditableRecordset &rows = *PrimaryCLS->dataMember(u"Primary"_s);
    const QString column = QString::fromUtf16(field(index).column);
    if (index == HTMLFilePath && !rows.hasField(column))
        return m_services.database.openRecordset(Statements::htmlPath(rows.field(u"ID"_s).toLongLong()))
            ->field(0)
            .toString();
    const QVariant value = rows.field(column);
    return value.typeId() == QMetaType::QDate ? ShortDate::toText(value.toDate()) : value.toString();
}

void frmPageData1::showRow()
{
    const EditableRecordset &rows = *PrimaryCLS->dataMember(u"Primary"_s);
    const bool onRow = rows.position() > 0;
    const bool added = rows.editMode() == EditableRecordset::EditMode::Add;
    for (BoundBox *bound : txtFields) {
        const auto index = static_cast<Index>(bound->index());
        const bool stored = index != HTMLFilePath || rows.hasField(u"HTMLFilePath"_s);
        QString text;
        try {
            if (onRow && (stored || !added))
                text = storedText(index);
        } catch (const RunTimeError &) {
            // The page has gone; its boxes are empty.
        }
        bound->show(text);
        bound->setEditable(onRow && stored);
        if (index == HTMLFilePath)
            m_ui->cmdBrowse_1->setEnabled(stored);
    }
    m_touched = false;
    m_thumbnailTimer.start();
}

void frmPageData1::showThumbnail()
{
    const QString path = box(ScreenShotFilePath).text().trimmed();
    m_thumbnail = {};
    QString reason = path.isEmpty() ? u"This page has no image."_s : QString();
    try {
        if (!path.isEmpty())
            m_thumbnail = ImageFile::load(path);
    } catch (const RunTimeError &) {
        reason = u"The image cannot be shown."_s;
    }
    if (m_thumbnail.isNull()) {
        m_ui->lblThumbnail->setPixmap({});
        m_ui->lblThumbnail->setText(reason);
        return;
    }
    const qreal scale = devicePixelRatioF();
    const QSize room = m_ui->lblThumbnail->contentsRect().size() * scale;
    QPixmap small =
        QPixmap::fromImage(m_thumbnail.size().boundedTo(room) == m_thumbnail.size()
                               ? m_thumbnail
                               : m_thumbnail.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    small.setDevicePixelRatio(scale);
    m_ui->lblThumbnail->setPixmap(small);
}

void frmPageData1::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_thumbnailTimer.start();
}

bool frmPageData1::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_ui->lblThumbnail && event->type() == QEvent::MouseButtonDblClick) {
        runGuarded(m_failures, [this] { cmdOpenPic_Click(); });
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

// ---- boxes

void frmPageData1::txtFields_Change(BoundBox &bound)
{
    const int limit = bound.field().limit;
    const QString text = bound.text();
    if (limit > 0 && text.size() > limit) {
        const QString shown = text.size() > shownInput ? text.first(shownInput) + u"..."_s : text;
        bound.show(text.first(limit));
        tell(Question::TextTooLong,
             u"Over size limitation of this text box. The extra letters will be automatically "
             "removed. The size limitation for this box is %1. Your input was: \r\n\r\n"_s.arg(limit) +
                 shown);
    }
    PrimaryCLS->dataMember(u"Primary"_s)->setField(QString::fromUtf16(bound.field().column), bound.text());
    m_touched = true;
    if (bound.index() == ScreenShotFilePath)
        m_thumbnailTimer.start();
}

void frmPageData1::txtFields_Validate(BoundBox &bound)
{
    const auto index = static_cast<Index>(bound.index());
    if (PrimaryCLS->AbsolutePosition() < 1)
        return;
    const QString path = bound.text().trimmed();
    if (isPath(index) && !path.isEmpty() && !m_services.state.FileSystem.fileExists(path)) {
        tell(Question::FilePathMissing, u"Check the file path carefully, it does not exist:\r\n"_s + path,
             Icon::Exclamation, u"File Not Exist"_s);
        m_ui->TabStrip1->setCurrentIndex(bound.field().tab - 1);
        bound.widget()->setFocus();
    }
    if (index == Layout && !isLayout(bound.text())) {
        tell(Question::LayoutInvalid, u"Only 0,1,2 allowed in layout."_s);
        bound.enter(u"0"_s);
    }
}

/// The box that has the keyboard counts as left when a button is clicked, which does not take the keyboard
/// away. False when it keeps it.
bool frmPageData1::leaveBox()
{
    for (BoundBox *bound : txtFields) {
        if (!bound->widget()->hasFocus())
            continue;
        const auto index = static_cast<Index>(bound->index());
        const QString path = bound->text().trimmed();
        txtFields_Validate(*bound);
        return !isPath(index) || path.isEmpty() || m_services.state.FileSystem.fileExists(path);
    }
    return true;
}
