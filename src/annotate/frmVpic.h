#pragma once

#include "annotate/AnnotationTools.h"
#include "annotate/ViewerPicture.h"
#include "platform/qt/Guarded.h"
#include "platform/Spelling.h"
#include "state/Workspace.h"

#include <QWidget>

#include <array>

class ColorBar;
class FilePanel;
class PictureCanvas;
class PictureView;
class QAction;
class QLineEdit;
class QToolBar;

/// The snapshot viewer: shows the picture files of a folder, and lets the user draw on them, save, print and
/// delete them. Each viewer has its own picture, colour and history; the tool is common to all.
///
/// Opening one takes up Module1::ImageFileRequested and CommandLinePath.
class frmVpic : public QWidget
{
    Q_OBJECT

public:
    struct Services {
        Module1 &state;
        PageDatabase &database;
        Prompter &prompter;
        Workspace &workspace;
        Spelling &spelling;
    };

    explicit frmVpic(const Services &services);
    ~frmVpic() override;

    QStringList fileNames() const;
    /// Selects a row of the file list, which loads its picture; -1 does nothing.
    void selectFile(int row);

protected:
    bool event(QEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    /// Buttons of `tlbmain`, in their order; the last one leads to the paint editor.
    enum Command { DrawText, DrawBox, DrawLine, Undo, Redo, Save, Hide, Show, Print, Delete, Help, Paint };
    static constexpr std::size_t commandCount = Paint + 1;
    struct Row;
    static std::span<const Row, commandCount> rows();

    void buildControls();
    void buildCommands();
    void connectControls();
    void Form_Load();
    void showStartFolder();
    void takeCommandLine();

    void File1_Click(int row);
    void Dir1_Change(const QString &folder);
    void tlbmain_ButtonClick(Command command);
    void OpenImage();
    void runTool(const std::function<void()> &gesture);
    void askText();
    void showDirectory(bool shown);
    void DeleteImage();
    void openHelp();

    void pictureLoaded();
    void pictureChanged();
    void ArrangeControls();
    void updateButtons();
    QAction &action(Command command) const { return *m_commands[command]; }

    Services m_services;
    FailureBox m_failures;
    ViewerPicture m_picture;
    AnnotationTools m_tools;
    std::array<QAction *, commandCount> m_commands{};
    bool m_saveEnabled = false;
    QString m_refused; ///< the requested file, where it could not be shown

    FilePanel *m_files;
    PictureView *m_view;
    PictureCanvas *Picture1;
    QToolBar *tlbmain;
    ColorBar *tlbcolor;
    QLineEdit *txtFileName;
};
