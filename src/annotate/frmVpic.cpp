#include "annotate/frmVpic.h"

#include "annotate/frmText.h"
#include "annotate/frmVpicCanvas.h"
#include "annotate/frmVpicColors.h"
#include "annotate/frmVpicFiles.h"
#include "annotate/frmVpicView.h"
#include "platform/qt/ThemedIcon.h"
#include "platform/qt/ToolTip.h"

#include <QAction>
#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScopeGuard>
#include <QShortcut>
#include <QTimer>
#include <QToolBar>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int fileListWidth = 130;
} // namespace

struct frmVpic::Row {
    const char16_t *key;
    const char16_t *toolTip;
    const char16_t *icon;
    QKeySequence::StandardKey shortcut;
    bool isTool;
};

std::span<const frmVpic::Row, frmVpic::commandCount> frmVpic::rows()
{
    static constexpr Row table[commandCount] = {
        {u"drawtext", u"Step 1: Add some notes", u"draw-text", QKeySequence::UnknownKey, true},
        {u"drawbox", u"Step 2: Draw a box around it", u"draw-box", QKeySequence::UnknownKey, true},
        {u"drawline", u"Step 3: Draw a line to point to it", u"draw-line", QKeySequence::UnknownKey, true},
        {u"Undo", u"Undo", u"undo", QKeySequence::Undo, false},
        {u"Redo", u"Redo", u"redo", QKeySequence::Redo, false},
        {u"Save", u"Save", u"save", QKeySequence::Save, false},
        {u"Hide", u"Hide Directory", u"hide-directory", QKeySequence::UnknownKey, false},
        {u"Show", u"Show Directory", u"show-directory", QKeySequence::UnknownKey, false},
        {u"PrintPic", u"Print image file", u"print", QKeySequence::Print, false},
        {u"pDelete", u"Delete an image file", u"delete-image", QKeySequence::UnknownKey, false},
        {u"pHelp", u"Help", u"viewer-help", QKeySequence::UnknownKey, false},
        {u"PaintEditor", u"Paint Editor", u"viewer-paint", QKeySequence::UnknownKey, false},
    };
    return table;
}

frmVpic::frmVpic(const Services &services)
    : m_services(services), m_failures(services.prompter),
      m_picture({services.state, services.database, services.prompter}),
      m_tools({services.state, services.prompter, m_picture, [this] { askText(); },
               [this] { pictureChanged(); }}),
      m_files(new FilePanel(this)), m_view(new PictureView(this)),
      Picture1(new PictureCanvas(m_picture, m_tools, m_view->viewport())), tlbmain(new QToolBar(this)),
      tlbcolor(new ColorBar(this)), txtFileName(new QLineEdit(this))
{
    setObjectName("frmVpic"_L1);
    setWindowTitle(u"Screen Shots"_s);
    buildControls();
    connectControls();
    Form_Load();
}

frmVpic::~frmVpic() = default;

void frmVpic::buildControls()
{
    m_view->setCanvas(Picture1);
    tlbmain->setObjectName("tlbmain"_L1);
    txtFileName->setObjectName("txtFileName"_L1);
    txtFileName->setMinimumWidth(160);
    txtFileName->setMaximumWidth(360);
    buildCommands();
    m_files->setFixedWidth(fileListWidth);

    auto *label = new QLabel(u"File Name:"_s, this);
    label->setBuddy(txtFileName);
    auto *bars = new QHBoxLayout;
    bars->setSpacing(8);
    bars->addWidget(tlbmain);
    bars->addWidget(label);
    bars->addWidget(txtFileName, 1);
    bars->addStretch();
    auto *right = new QVBoxLayout;
    right->setSpacing(2);
    right->addWidget(tlbcolor);
    right->addWidget(m_view, 1);
    auto *halves = new QHBoxLayout;
    halves->setSpacing(6);
    halves->addWidget(m_files);
    halves->addLayout(right, 1);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(4, 2, 4, 4);
    column->setSpacing(2);
    column->addLayout(bars);
    column->addLayout(halves, 1);
}

void frmVpic::buildCommands()
{
    tlbmain->setIconSize({24, 24});
    for (std::size_t i = 0; i < commandCount; ++i) {
        const Row &row = rows()[i];
        auto *made = new QAction(themedIcon(QString::fromUtf16(row.icon) + u".svg"_s),
                                 QString::fromUtf16(row.toolTip), this);
        made->setObjectName(QString::fromUtf16(row.key));
        made->setToolTip(
            ToolTip::withKeys(QString::fromUtf16(row.toolTip),
                              i == Help ? QKeySequence(Qt::Key_F1) : QKeySequence(row.shortcut)));
        made->setCheckable(row.isTool);
        made->setShortcuts(row.shortcut);
        made->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        connect(made, &QAction::triggered, this,
                guarded(m_failures, [this, i] { tlbmain_ButtonClick(static_cast<Command>(i)); }));
        if (i == Undo || i == Hide || i == Print || i == Help)
            tlbmain->addSeparator();
        tlbmain->addAction(made);
        addAction(made);
        m_commands[i] = made;
    }
}

void frmVpic::connectControls()
{
    const auto slot = [this](auto function) {
        return [this, function](auto... arguments) {
            runGuarded(m_failures, [&] { (this->*function)(arguments...); });
        };
    };
    connect(m_files->File1, &FileList::chosen, this, slot(&frmVpic::File1_Click));
    connect(m_files, &FilePanel::folderChosen, this, slot(&frmVpic::Dir1_Change));
    connect(m_files, &FilePanel::followed, this, guarded(m_failures, [this] {
                if (m_picture.follow())
                    pictureChanged();
            }));
    connect(Picture1, &PictureCanvas::pressed, this,
            [this](AnnotationTools::Button button, QPoint at) { m_tools.mouseDown(button, at); });
    connect(Picture1, &PictureCanvas::dragged, this, [this](QPoint at) {
        m_tools.mouseMove(at);
        Picture1->bandChanged();
    });
    connect(Picture1, &PictureCanvas::released, this, [this](AnnotationTools::Button button, QPoint at) {
        runTool([this, button, at] { m_tools.mouseUp(button, at); });
    });
    connect(Picture1, &PictureCanvas::cancelled, this,
            [this] { runTool([this] { m_tools.cancelGesture(); }); });
    connect(tlbcolor, &ColorBar::colourChosen, this,
            [this](std::uint32_t value) { m_tools.setColour(value); });
    auto *open = new QShortcut(QKeySequence::Open, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
    connect(open, &QShortcut::activated, this, slot(&frmVpic::OpenImage));
}

void frmVpic::Form_Load()
{
    const bool requested = m_services.state.ImageFileRequested;
    if (m_picture.loadRequested()) {
        runGuarded(m_failures, [this] { m_files->setFolder(QFileInfo(m_picture.path()).path()); });
        m_files->markFile(m_picture.path());
        pictureLoaded();
    } else {
        if (requested)
            m_refused = m_services.state.CurrentImagePath;
        runGuarded(m_failures, [this] { showStartFolder(); });
    }
    runGuarded(m_failures, [this] { takeCommandLine(); });
    updateButtons();
    ArrangeControls();
    // Once it is shown: the arrow keys step through the pictures.
    QTimer::singleShot(0, this, [this] { m_files->File1->setFocus(); });
}

void frmVpic::showStartFolder()
{
    const Module1 &state = m_services.state;
    QString folder = state.ProjectDirectory.trimmed();
    if (folder.isEmpty())
        folder = state.AppOptions.BaseDirectory;
    folder = QDir::cleanPath(folder);
    if (state.FileSystem.folderExists(folder) && folder != u"/"_s)
        m_files->setFolder(folder);
    else
        m_files->setFolder(QDir::homePath());
}

void frmVpic::takeCommandLine()
{
    const QString argument = std::exchange(m_services.state.CommandLinePath, QString());
    if (argument.isEmpty())
        return;
    m_files->setFolder(QFileInfo(ImageFolder::pathOfArgument(argument)).path());
    m_files->markFile(m_picture.path());
}

// ---- files

QStringList frmVpic::fileNames() const
{
    return m_files->File1->names();
}

void frmVpic::selectFile(int row)
{
    if (row < 0)
        return;
    m_files->File1->mark(row);
    const QString path = m_files->pathOf(row);
    if (std::exchange(m_refused, QString()) == path || (m_picture.path() == path && !m_picture.dirty()))
        return; // the user knows that it cannot be shown, or sees it
    runGuarded(m_failures, [this, row] { File1_Click(row); });
}

void frmVpic::File1_Click(int row)
{
    m_tools.cancelGesture();
    switch (m_picture.chooseFile(m_files->pathOf(row), txtFileName->text())) {
    case ViewerPicture::Choice::Shown:
        return pictureLoaded();
    case ViewerPicture::Choice::Unreadable: // the keys go on beyond it
        return m_files->markFile(m_picture.path(), row);
    case ViewerPicture::Choice::Cancelled:
        return m_files->markFile(m_picture.path());
    }
}

void frmVpic::Dir1_Change(const QString &folder)
{
    try {
        m_files->setFolder(folder);
    } catch (const RunTimeError &error) {
        m_picture.ShowErrMessage(0, error.description());
        m_files->showPlace();
    }
    m_files->markFile(m_picture.path());
}

void frmVpic::OpenImage()
{
    m_tools.cancelGesture();
    if (m_picture.OpenImage(txtFileName->text())) {
        m_files->markFile(m_picture.path());
        pictureLoaded();
    }
    updateButtons();
}

void frmVpic::pictureLoaded()
{
    setWindowTitle(u"Screen Shots "_s + m_picture.path());
    txtFileName->setText(FileSystem::bareName(m_picture.path()));
    m_saveEnabled = true;
    m_view->scrollHome();
    pictureChanged();
}

// ---- commands

void frmVpic::tlbmain_ButtonClick(Command command)
{
    m_services.state.CurrentTool = QString::fromUtf16(rows()[command].key);
    const auto update = qScopeGuard([this] { updateButtons(); });
    m_tools.cancelGesture();
    switch (command) {
    case DrawText:
    case DrawBox:
    case DrawLine:
        return;
    case Undo:
        m_picture.UndoImage();
        Picture1->setFocus();
        return pictureChanged();
    case Redo:
        m_picture.RedoImage();
        return pictureChanged();
    case Save:
        m_picture.SaveImage(txtFileName->text());
        return;
    case Hide:
    case Show:
        return showDirectory(command == Show);
    case Print:
        return m_picture.PrintImage();
    case Delete:
        return DeleteImage();
    case Help:
        return openHelp();
    case Paint:
        return m_services.workspace.openPaintEditor(m_picture.path());
    }
}

void frmVpic::runTool(const std::function<void()> &gesture)
{
    const auto done = qScopeGuard([this] {
        pictureChanged();
        Picture1->setFocus();
    });
    runGuarded(m_failures, gesture);
}

void frmVpic::askText()
{
    const auto &[state, database, prompter, workspace, spelling] = m_services;
    frmText({state, prompter, workspace, spelling}, this).exec();
}

void frmVpic::showDirectory(bool shown)
{
    m_files->setVisible(shown);
    (shown ? static_cast<QWidget *>(m_files->File1) : Picture1)->setFocus();
    ArrangeControls();
}

void frmVpic::DeleteImage()
{
    if (!m_picture.DeleteImage())
        return;
    m_services.workspace.refreshPageViews();
    if (close())
        m_services.workspace.deleteTab(property("formID").toInt());
}

void frmVpic::openHelp()
{
    m_services.workspace.openHelp(u"notes.htm"_s);
}

// ---- looks

void frmVpic::pictureChanged()
{
    Picture1->pictureChanged();
    ArrangeControls();
    updateButtons();
}

void frmVpic::ArrangeControls()
{
    layout()->activate();
    m_view->arrange(m_files->isHidden() ? 0 : fileListWidth);
}

void frmVpic::updateButtons()
{
    action(Undo).setEnabled(m_picture.history().undoEnabled());
    action(Redo).setEnabled(m_picture.history().redoEnabled());
    action(Save).setEnabled(m_saveEnabled);
    action(Hide).setEnabled(!m_files->isHidden());
    action(Show).setEnabled(m_files->isHidden());
    for (const Command tool : {DrawText, DrawBox, DrawLine})
        action(tool).setChecked(action(tool).objectName() == m_services.state.CurrentTool);
}

// ---- the window

bool frmVpic::event(QEvent *event)
{
    // The main window has F1, too: here it is about the viewer.
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent *>(event)->key() == Qt::Key_F1) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void frmVpic::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F1 && !event->isAutoRepeat())
        runGuarded(m_failures, [this] { openHelp(); });
    else
        QWidget::keyReleaseEvent(event);
}

void frmVpic::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // With several viewers the one that is seen is meant by what is done next.
    if (!m_picture.path().isEmpty())
        m_services.state.CurrentImagePath = m_picture.path();
    updateButtons();
    ArrangeControls();
}

void frmVpic::closeEvent(QCloseEvent *event)
{
    bool mayGo = false;
    runGuarded(m_failures, [&] { mayGo = m_picture.QuerySaveOnClose(txtFileName->text()); });
    event->setAccepted(mayGo);
}
