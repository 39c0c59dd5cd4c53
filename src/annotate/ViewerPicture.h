#pragma once

#include "annotate/ImageHistory.h"
#include "pagestore/PageDatabase.h"
#include "platform/Prompter.h"
#include "state/Module1.h"

#include <QDateTime>

/// The picture of one viewer, with its file, its history and whether it was changed: everything a viewer does
/// that is no widget. Failures that a user can cause are told and leave everything as it was.
class ViewerPicture
{
public:
    struct Services {
        Module1 &state;
        PageDatabase &database;
        Prompter &prompter;
    };

    /// Begins with a white picture of 200 x 200 pixels.
    explicit ViewerPicture(const Services &services);

    /// Format_RGB32, never null.
    const QImage &image() const { return m_image; }
    /// For drawing; what is drawn is no entry of the history before SetImageBuffer().
    QImage &canvas() { return m_image; }

    const QString &path() const { return m_path; } ///< of the file shown; empty when none is
    bool dirty() const { return m_dirty; }
    void touch() { m_dirty = true; }

    ImageHistory &history() { return m_history; }
    const ImageHistory &history() const { return m_history; }
    void SetImageBuffer() { m_history.push(m_image); }
    void UndoImage();
    void RedoImage();
    void ResetImageBuffer() { m_history.reset(m_image); }

    /// The file that the opener asks for (ImageFileRequested). False when it is not there or no picture.
    bool loadRequested();

    /// A file was chosen in the list: asks for unsaved changes first; `fileName` is the name proposed for
    /// them. The old picture stays when the user cancels or the file cannot be shown.
    enum class Choice { Shown, Cancelled, Unreadable };
    Choice chooseFile(const QString &path, const QString &fileName);

    /// Somebody else has written the file that is shown: shows what it holds now, unless there are unsaved
    /// changes or it cannot be shown. False when nothing has changed.
    bool follow();

    /// Asks for a file, after unsaved changes, and forgets the history. False when the old picture stays.
    bool OpenImage(const QString &fileName);

    /// Before another picture replaces this one. Cancel: it must not be replaced, because the user says so
    /// or because it could not be written.
    Answer QuerySave(const QString &fileName);
    /// Before the viewer goes. False: it must stay, because what was to be saved is not.
    bool QuerySaveOnClose(const QString &fileName);

    /// Asks for a name; `fileName` is proposed. False when nothing was saved. The picture counts as
    /// unchanged then too, unless writing failed or another file would have been replaced.
    bool SaveImage(const QString &fileName);

    /// Deletes the file that CurrentImagePath names; a copy with ".removed" in its name stays. True when its
    /// page has been marked. Throws RunTimeError when the file cannot be copied or deleted.
    bool DeleteImage();

    void PrintImage();

    /// 0: `text` after the program's name; 2: nothing can be printed.
    void ShowErrMessage(std::int32_t kind, const QString &text);

private:
    /// Tells whether a file is still the one that was read or written.
    struct Stamp {
        QDateTime time;
        qint64 size = 0;
        bool operator==(const Stamp &) const = default;
    };
    static Stamp stampOf(const QString &path);
    enum class Leaving { Unchanged, Saved, Discarded, Refused };
    Leaving askToLeave(const QString &fileName);
    FilePrompt filePrompt() const;
    void show(const QString &path);
    void showAgain(const QImage &image);
    bool writeTo(const QString &path);

    Services m_services;
    QImage m_image;
    QString m_path;
    Stamp m_stamp;
    bool m_dirty = false;
    ImageHistory m_history;
};
