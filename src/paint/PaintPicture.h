#pragma once

#include "paint/PaintHistory.h"
#include "paint/PaintSettings.h"
#include "platform/Prompter.h"
#include "state/Module1.h"

#include <functional>
#include <utility>

/// The picture of the paint editor with its file, its history and the selection: everything the editor does
/// that is neither a widget nor a drawing tool. Sizes and positions are pixels of the picture. Failures that
/// a user can cause are told and leave everything as it was.
///
/// Commands that replace or flatten the picture first finish what is pending: text, polygon and curve of the
/// tools, then the selection.
class PaintPicture
{
public:
    struct Services {
        Module1 &state;
        Prompter &prompter;
        const PaintSettings &settings; ///< the fill colour lies behind what is moved, deleted or added
    };

    /// Begins with a white, untitled picture of this size.
    static constexpr QSize firstSize{427, 400};
    explicit PaintPicture(const Services &services);

    /// Format_RGB32, never null; without a floating selection.
    const QImage &image() const { return m_image; }
    /// As the user sees it: with the floating selection.
    QImage flattened() const;

    const QString &fileName() const { return m_fileName; } ///< whole path; empty for an untitled picture
    QString title() const; ///< of the window: "untitled - Easel" or the file name & " - Easel"
    bool dirty() const { return m_dirty; } ///< changed since it was opened, made or saved

    /// For drawing; SetImageBuffer() makes an undo entry of what was drawn, revert() takes it back.
    QImage &canvas() { return m_image; }
    void SetImageBuffer();
    void revert();

    /// The drawing tools' unfinished work, so that commands can finish it. `finish` makes entries by
    /// SetImageBuffer().
    struct PendingWork {
        std::function<bool()> exists;
        std::function<void()> finish;
    };
    void setPendingWork(PendingWork work) { m_pending = std::move(work); }
    /// Finishes the tools' work and commits the selection. Printing wants it, too.
    void finishPending();

    /// Whether the editor can work on a picture of that size: one that can be opened as a file, no side
    /// longer than what can be drawn on.
    static bool isPossible(QSize size);

    // ---- files. False: the picture stays, and is told where it is not the user's will.

    bool New();                         ///< white, in the present size; asks for unsaved changes first
    bool openFile(const QString &path); ///< asks for unsaved changes first
    bool Open();                        ///< likewise, then for a file
    bool Save();                        ///< an untitled picture: SaveAs
    bool SaveAs();
    /// Before another picture comes or the window goes: "Do you want to save the changes?". False: stay.
    bool queryClose();
    /// The user does not want the changes: as it was opened, made or saved.
    void discardChanges();

    // ---- history

    /// For the menu; what is pending would be finished and then undone, so it counts as an entry.
    bool undoEnabled() const;
    bool redoEnabled() const; ///< not while something is pending, as that would become the newest entry
    void undo();
    void redo();
    const PaintHistory &history() const { return m_history; }

    // ---- selection

    /// A part of the picture. It floats when it has been moved, pasted or changed: then `picture` is shown
    /// over the image, at `place`, which may reach out of it.
    struct Selection {
        QRect place;    ///< null: nothing is selected
        QImage picture; ///< null: it does not float
        bool exists() const { return !place.isNull(); }
        bool floats() const { return !picture.isNull(); }
    };
    const Selection &selection() const { return m_selection; }
    /// Commits an earlier selection and selects a box, clipped to the picture; an empty box selects nothing.
    void select(const QRect &box);
    /// Lets the selection float: what it leaves gets the fill colour, or stays as it is (`leaveCopy`). One
    /// that floats already leaves a copy in the picture, as an undo entry, or nothing.
    void lift(bool leaveCopy);
    /// Moves a floating selection.
    void moveSelection(QPoint topLeft);
    /// Paints a floating selection into the picture; one undo entry, unless nothing was changed. Nothing is
    /// selected any more.
    void commitSelection();
    /// Takes a floating selection back; nothing is selected any more.
    void dropSelection();

    // ---- edit commands. False: there was nothing to do. One undo entry each, but for Copy and Paste; a
    // selection that was moved or pasted before gets one of its own.

    const QImage &clipboard() const { return m_clipboard; } ///< picClipboard; null: "Paste" is disabled
    void Copy();                                            ///< the selection, else the whole picture
    bool Cut();
    /// Floats at `at`; a null picture does nothing, one that is too large is told.
    void Paste(const QImage &picture, QPoint at);
    bool Delete();
    bool Crop();
    void Clear();                         ///< everything in the fill colour
    bool resizeCanvas(const QSize &size); ///< grows and shrinks at right and bottom; false also: too large
    /// Gives the selection (which floats from then on), else the whole picture, to `effect` and puts what
    /// comes back in its place. A null picture changes nothing; what `effect` throws passes, nothing is
    /// changed. `growth` tells the size that comes back beforehand: one that is too large is told.
    bool apply(const std::function<QImage(const QImage &)> &effect,
               const std::function<QSize(QSize)> &growth = {});

private:
    void show(const QImage &image, const QString &fileName);
    void ResetImageBuffer();
    bool load(const QString &path);
    bool write(const QString &path);
    FilePrompt filePrompt() const;
    void finishTools();
    void showEntry(const QImage &entry);
    bool isPending() const;
    void tellTooLarge(QSize size);
    QImage selectedPicture() const;
    void settle();
    void pushEntry(const QImage &picture);
    void leavePlace();

    Services m_services;
    QImage m_image;
    QString m_fileName;
    QImage m_clean; ///< as it was opened, made or saved
    bool m_dirty = false;
    PaintHistory m_history;
    PendingWork m_pending;
    Selection m_selection;
    bool m_unsettled = false; ///< the floating selection is in no undo entry yet
    QImage m_clipboard;
};
