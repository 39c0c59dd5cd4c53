#include "annotate/ViewerPicture.h"

#include "annotate/PicturePrinting.h"
#include "pagestore/Statements.h"
#include "platform/ImageFile.h"
#include "platform/PrintJob.h"
#include "platform/RunTimeError.h"

#include <QFileInfo>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr QSize emptySize(200, 200); // pixels

QString described(const RunTimeError &error)
{
    return u"%1 %2"_s.arg(error.number()).arg(error.description());
}
} // namespace

ViewerPicture::ViewerPicture(const Services &services)
    : m_services(services), m_image(emptySize, QImage::Format_RGB32)
{
    m_image.fill(Qt::white);
    ResetImageBuffer();
}

void ViewerPicture::UndoImage()
{
    showAgain(m_history.undo(m_services.state.TextRetry));
}

void ViewerPicture::RedoImage()
{
    showAgain(m_history.redo());
}

/// An earlier or later state is none that has been saved.
void ViewerPicture::showAgain(const QImage &image)
{
    m_dirty = m_dirty || image.cacheKey() != m_image.cacheKey();
    m_image = image;
}

/// Throws before anything has changed. A file that is written meanwhile counts as another one.
void ViewerPicture::show(const QString &path)
{
    const Stamp stamp = stampOf(path);
    m_image = ImageFile::load(path);
    m_path = path;
    m_stamp = stamp;
    SetImageBuffer();
    m_services.state.CurrentImagePath = path;
}

bool ViewerPicture::loadRequested()
{
    Module1 &state = m_services.state;
    if (!std::exchange(state.ImageFileRequested, false))
        return false;
    const QString path = state.CurrentImagePath;
    if (!state.FileSystem.fileExists(path))
        return false;
    try {
        show(path);
    } catch (const RunTimeError &error) {
        ShowErrMessage(0, error.description());
        return false;
    }
    // Also the first entry: taking a text back must never lead to an empty picture.
    ResetImageBuffer();
    SetImageBuffer();
    return true;
}

ViewerPicture::Choice ViewerPicture::chooseFile(const QString &path, const QString &fileName)
{
    const Leaving leaving = askToLeave(fileName);
    if (leaving == Leaving::Refused)
        return Choice::Cancelled;
    try {
        show(path);
    } catch (const RunTimeError &error) {
        m_dirty = leaving == Leaving::Discarded; // what is still shown may still be saved
        ShowErrMessage(0, error.description());
        return Choice::Unreadable;
    }
    return Choice::Shown;
}

ViewerPicture::Stamp ViewerPicture::stampOf(const QString &path)
{
    const QFileInfo file(path);
    return {file.lastModified(), file.size()};
}

bool ViewerPicture::follow()
{
    if (m_dirty || m_path.isEmpty() || !m_services.state.FileSystem.fileExists(m_path) ||
        stampOf(m_path) == m_stamp)
        return false;
    try {
        const QString current = m_services.state.CurrentImagePath; // another viewer's, perhaps
        show(QString(m_path));
        m_services.state.CurrentImagePath = current;
        return true;
    } catch (const RunTimeError &) {
        m_stamp = stampOf(m_path); // it may be in the middle of being written; the user has asked for nothing
        return false;
    }
}

bool ViewerPicture::OpenImage(const QString &fileName)
{
    ResetImageBuffer();
    const Leaving leaving = askToLeave(fileName);
    if (leaving == Leaving::Refused)
        return false;
    FilePrompt prompt = filePrompt();
    prompt.title = u"Open"_s;
    if (!m_services.state.FileSystem.folderExists(prompt.directory))
        prompt.directory.clear();
    const auto path = m_services.prompter.openFile(Question::OpenImage, prompt);
    try {
        if (path) {
            show(*path);
            return true;
        }
    } catch (const RunTimeError &error) {
        m_services.prompter.tell(Question::OpenImageFailed,
                                 {u"Cannot open the file Error number="_s + described(error),
                                  m_services.state.AppTitle, Icon::Exclamation});
    }
    m_dirty = leaving == Leaving::Discarded;
    return false;
}

FilePrompt ViewerPicture::filePrompt() const
{
    const AppOptions &options = m_services.state.AppOptions;
    FilePrompt prompt;
    prompt.directory = FileSystem::join(options.BaseDirectory, options.ProjectName);
    prompt.filter = u"All Image Files|*.Bmp;*.jpg;*.gif |"_s;
    return prompt;
}

// ---- saving

ViewerPicture::Leaving ViewerPicture::askToLeave(const QString &fileName)
{
    if (!m_dirty)
        return Leaving::Unchanged;
    m_dirty = false;
    switch (m_services.prompter.ask(
        Question::SaveImageChanges, Buttons::YesNoCancel,
        {u"Do you want to save the changes?"_s, u"Save Changes?"_s, Icon::Question})) {
    case Answer::Yes:
        SaveImage(fileName);
        return m_dirty ? Leaving::Refused : Leaving::Saved;
    case Answer::No:
        return Leaving::Discarded;
    default:
        m_dirty = true;
        return Leaving::Refused;
    }
}

Answer ViewerPicture::QuerySave(const QString &fileName)
{
    return askToLeave(fileName) == Leaving::Refused ? Answer::Cancel : Answer::Yes;
}

bool ViewerPicture::QuerySaveOnClose(const QString &fileName)
{
    if (!m_dirty)
        return true;
    if (m_services.prompter.ask(
            Question::SaveImageChangesOnClose, Buttons::YesNo,
            {u"Do you want to save the changes?"_s, u"Save Changes?"_s, Icon::Question}) != Answer::Yes)
        return true;
    m_dirty = !SaveImage(fileName);
    return !m_dirty;
}

bool ViewerPicture::SaveImage(const QString &fileName)
{
    FilePrompt prompt = filePrompt();
    prompt.title = u"Save As"_s;
    prompt.fileName = fileName.trimmed();
    const auto path = m_services.prompter.saveFile(Question::SaveImageAs, prompt);
    m_dirty = false;
    if (!path)
        return false;
    // The picture's own file is there to be replaced; about any other the user may not have thought.
    if (*path != m_path && m_services.state.FileSystem.fileExists(*path) &&
        m_services.prompter.ask(Question::ReplaceImageFile, Buttons::YesNo,
                                {u"%1\r\nalready exists. Do you want to replace it?"_s.arg(*path),
                                 u"Save As"_s, Icon::Exclamation}) != Answer::Yes) {
        m_dirty = true;
        return false;
    }
    return writeTo(*path);
}

bool ViewerPicture::writeTo(const QString &path)
{
    try {
        ImageFile::save(m_image, path);
        if (path == m_path)
            m_stamp = stampOf(path);
        return true;
    } catch (const RunTimeError &error) {
        m_dirty = true;
        m_services.prompter.tell(Question::SaveImageFailed,
                                 {u"Cannot save the file. Error number="_s + described(error),
                                  m_services.state.AppTitle, Icon::Exclamation});
        return false;
    }
}

// ---- deleting, printing

bool ViewerPicture::DeleteImage()
{
    Module1 &state = m_services.state;
    const QString path = state.CurrentImagePath;
    const QString title = u"Delete image file?"_s;
    if (path.trimmed().isEmpty()) {
        m_services.prompter.tell(Question::SelectImageFirst,
                                 {u"If there is an image file for this project, click the image file in the "
                                  u"file list on the left\r\n"
                                  "side, then click this button."_s,
                                  u"Select an image file first"_s});
        return false;
    }
    if (m_services.prompter.ask(Question::DeleteImage, Buttons::YesNo,
                                {u"Delete image file: \r\n%1\r\nAre you sure?"_s.arg(path), title,
                                 Icon::Question}) != Answer::Yes)
        return false;
    if (state.FileSystem.fileExists(path)) {
        state.FileSystem.copyFile(path, path + u".removed"_s);
        state.FileSystem.deleteFile(path);
    } else {
        m_services.prompter.tell(Question::ImageToDeleteMissing,
                                 {u"File: %1\r\nnot exist."_s.arg(path), title});
    }
    m_services.database.RunSql(QString::fromUtf16(Statements::pageTable), Statements::markImageDeleted(path));
    return true;
}

void ViewerPicture::PrintImage()
{
    try {
        const std::unique_ptr<PrintJob> job = m_services.prompter.choosePrinter(Question::PrintImage);
        if (!job)
            return;
        PrintPictureToFitPage(job->device(), m_image);
        job->finish();
    } catch (const RunTimeError &) {
        ShowErrMessage(2, {});
    }
}

void ViewerPicture::ShowErrMessage(std::int32_t kind, const QString &text)
{
    QString message;
    if (kind == 0)
        message = u"Shotly: "_s + text;
    else if (kind == 2)
        message = u"Cannot print the file.\r\n\r\nMake sure the printer is ready."_s;
    m_services.prompter.tell(Question::ViewerFailed, {message, m_services.state.AppTitle, Icon::Critical});
}
