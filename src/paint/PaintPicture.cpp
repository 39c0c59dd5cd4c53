#include "paint/PaintPicture.h"

#include "platform/ImageFile.h"
#include "platform/RunTimeError.h"

#include <QFileInfo>
#include <QImageReader>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString &editorName()
{
    static const QString name = u"Easel"_s;
    return name;
}

/// "*.bmp;*.png;...": of everything that can be opened.
QString readablePatterns()
{
    QStringList patterns;
    for (const QByteArray &format : QImageReader::supportedImageFormats())
        patterns += u"*."_s + QString::fromLatin1(format);
    return patterns.join(u';');
}

QString described(const RunTimeError &error)
{
    return u"%1 %2"_s.arg(error.number()).arg(error.description());
}
} // namespace

PaintPicture::PaintPicture(const Services &services)
    : m_services(services), m_image(firstSize, QImage::Format_RGB32)
{
    m_image.fill(Qt::white);
    show(m_image, {});
}

QString PaintPicture::title() const
{
    return (m_fileName.isEmpty() ? u"untitled"_s : m_fileName) + u" - "_s + editorName();
}

void PaintPicture::SetImageBuffer()
{
    pushEntry(m_image);
}

void PaintPicture::ResetImageBuffer()
{
    m_history.reset(m_image);
    m_dirty = false;
}

void PaintPicture::pushEntry(const QImage &picture)
{
    m_history.push(picture);
    m_dirty = true;
}

void PaintPicture::revert()
{
    m_image = m_history.picture();
}

void PaintPicture::finishTools()
{
    if (m_pending.finish)
        m_pending.finish();
}

void PaintPicture::finishPending()
{
    finishTools();
    commitSelection();
}

// ---- files

void PaintPicture::show(const QImage &image, const QString &fileName)
{
    m_image = m_clean = image;
    m_fileName = fileName;
    m_selection = {};
    m_unsettled = false;
    ResetImageBuffer();
}

void PaintPicture::discardChanges()
{
    if (m_dirty)
        show(m_clean, m_fileName);
}

bool PaintPicture::queryClose()
{
    finishPending();
    if (!m_dirty)
        return true;
    switch (
        m_services.prompter.ask(Question::PaintSaveChanges, Buttons::YesNoCancel,
                                {u"Do you want to save the changes?"_s, editorName(), Icon::Exclamation})) {
    case Answer::Yes:
        return Save();
    case Answer::No:
        return true;
    default:
        return false;
    }
}

bool PaintPicture::New()
{
    if (!queryClose())
        return false;
    QImage empty(m_image.size(), QImage::Format_RGB32);
    empty.fill(Qt::white);
    show(empty, {});
    return true;
}

bool PaintPicture::load(const QString &path)
{
    try {
        const QImage loaded = ImageFile::load(path);
        if (!isPossible(loaded.size()))
            throw RunTimeError(RunTimeError::InvalidPicture,
                               u"%1 is too large to be edited: %2 x %3 pixels."_s.arg(path)
                                   .arg(loaded.width())
                                   .arg(loaded.height()));
        show(loaded, path);
        return true;
    } catch (const RunTimeError &error) {
        m_services.prompter.tell(
            Question::PaintOpenFailed,
            {u"Cannot open the file. Error number="_s + described(error), editorName(), Icon::Exclamation});
        return false;
    }
}

bool PaintPicture::openFile(const QString &path)
{
    return queryClose() && load(path);
}

bool PaintPicture::Open()
{
    if (!queryClose())
        return false;
    FilePrompt prompt = filePrompt();
    prompt.title = u"Open"_s;
    prompt.filter = u"All Image Files|"_s + readablePatterns();
    const auto path = m_services.prompter.openFile(Question::PaintOpen, prompt);
    return path && load(*path);
}

/// In the folder of the file shown, else in that of the project.
FilePrompt PaintPicture::filePrompt() const
{
    const AppOptions &options = m_services.state.AppOptions;
    FilePrompt prompt;
    prompt.directory = m_fileName.isEmpty() ? FileSystem::join(options.BaseDirectory, options.ProjectName)
                                            : QFileInfo(m_fileName).path();
    if (!m_services.state.FileSystem.folderExists(prompt.directory))
        prompt.directory.clear();
    return prompt;
}

bool PaintPicture::Save()
{
    if (m_fileName.isEmpty())
        return SaveAs();
    finishPending();
    return write(m_fileName);
}

bool PaintPicture::SaveAs()
{
    finishPending();
    FilePrompt prompt = filePrompt();
    prompt.title = u"Save As"_s;
    prompt.fileName = FileSystem::bareName(m_fileName);
    prompt.filter = u"Bitmap (*.bmp)|*.bmp|PNG (*.png)|*.png|JPEG (*.jpg)|*.jpg;*.jpeg"_s;
    const auto path = m_services.prompter.saveFile(Question::PaintSaveAs, prompt);
    if (!path)
        return false;
    if (*path != m_fileName && m_services.state.FileSystem.fileExists(*path) &&
        m_services.prompter.ask(Question::PaintReplaceFile, Buttons::YesNo,
                                {u"%1\r\nalready exists. Do you want to replace it?"_s.arg(*path),
                                 u"Save As"_s, Icon::Exclamation}) != Answer::Yes)
        return false;
    return write(*path);
}

bool PaintPicture::write(const QString &path)
{
    try {
        ImageFile::save(m_image, path);
    } catch (const RunTimeError &error) {
        m_services.prompter.tell(
            Question::PaintSaveFailed,
            {u"Cannot save the file. Error number="_s + described(error), editorName(), Icon::Exclamation});
        return false;
    }
    m_fileName = path;
    m_clean = m_image;
    m_dirty = false;
    return true;
}

// ---- history

/// Something that is not in the history yet.
bool PaintPicture::isPending() const
{
    return (m_selection.floats() && m_unsettled) || (m_pending.exists && m_pending.exists());
}

bool PaintPicture::undoEnabled() const
{
    return m_history.undoEnabled() || isPending();
}

bool PaintPicture::redoEnabled() const
{
    return m_history.redoEnabled() && !isPending();
}

void PaintPicture::undo()
{
    const bool pending = isPending();
    const int entry = m_history.current();
    finishPending();
    const bool nothingCame = pending && m_history.current() == entry; // an empty text, a single corner
    if (m_history.undoEnabled() && !nothingCame)
        showEntry(m_history.undo());
}

void PaintPicture::redo()
{
    finishPending();
    if (m_history.redoEnabled())
        showEntry(m_history.redo());
}

/// An earlier or later state is none that has been saved.
void PaintPicture::showEntry(const QImage &entry)
{
    m_image = entry;
    m_dirty = true;
}
