#include "pagestore/frmPageData1.h"

#include "documents/WordFiles.h"
#include "platform/qt/ThemedIcon.h"
#include "platform/ShortDate.h"
#include "ui_frmPageData1.h"

#include <QApplication>
#include <QCloseEvent>
#include <QShortcut>

#include <utility>

using namespace Qt::Literals::StringLiterals;
using namespace PageFields;

namespace
{
constexpr int thumbnailDelay = 30; // milliseconds; whoever hurries through the pages waits for no picture
// The same on light and dark desktops: the colours say what a box is for.
constexpr const char16_t *looks = u"[look=\"yellow\"] { background-color: #ffff80; color: black; }"
                                  "[look=\"white\"] { background-color: white; color: black; }"
                                  "[look=\"red\"] { background-color: white; color: #c00000; }"
                                  "[look=\"locked\"] { background-color: #dcdcdc; color: black; }"
                                  "#txtFields_10 { color: #0000c0; }";
} // namespace

frmPageData1::frmPageData1(const PageEditorServices &services)
    : m_services(services), m_failures(services.prompter), m_ui(std::make_unique<Ui::frmPageData1>())
{
    m_ui->setupUi(this);
    setStyleSheet(QString::fromUtf16(looks));
    bindBoxes();
    describeMoveButtons();
    connectButtons();
    m_ui->lblThumbnail->setMinimumSize(160, 90);
    m_ui->lblThumbnail->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    m_ui->lblThumbnail->installEventFilter(this);
    m_thumbnailTimer.setSingleShot(true);
    m_thumbnailTimer.setInterval(thumbnailDelay);
    connect(&m_thumbnailTimer, &QTimer::timeout, this, [this] { showThumbnail(); });

    PrimaryCLS = std::make_unique<clsPageData1>(m_services.database, m_services.state);
    connectRows();
    showRow();
    if (m_services.state.EditorAddPage) {
        cmdAdd_Click();
    } else {
        m_ui->cmdAdd->setEnabled(false);
        cmdEdit_Click();
    }
    UpdateNavigation();
    // Once it is shown.
    QTimer::singleShot(0, this, [this] { box(PageTitle).widget()->setFocus(); });
}

frmPageData1::~frmPageData1()
{
    m_services.state.EditorAddPage = false;
}

void frmPageData1::bindBoxes()
{
    for (int index = 0; index < PageFields::count; ++index) {
        auto *widget = findChild<QWidget *>(u"txtFields_%1"_s.arg(index));
        auto *bound = new BoundBox(index, widget, this);
        txtFields[static_cast<std::size_t>(index)] = bound;
        connect(bound, &BoundBox::edited, this,
                guarded(m_failures, [this, bound] { txtFields_Change(*bound); }));
        connect(bound, &BoundBox::left, this,
                guarded(m_failures, [this, bound] { txtFields_Validate(*bound); }));
        connect(bound, &BoundBox::characterRefused, this,
                guarded(m_failures, [this] { tell(Question::NumbersOnly, u"Numbers only in this box."_s); }));
    }
}

void frmPageData1::describeMoveButtons()
{
    const std::pair<QToolButton *, QString> buttons[] = {{m_ui->cmdFirst, u"first"_s},
                                                         {m_ui->cmdPrevious, u"previous"_s},
                                                         {m_ui->cmdNext, u"next"_s},
                                                         {m_ui->cmdLast, u"last"_s}};
    for (const auto &[button, icon] : buttons) {
        button->setIcon(themedIcon(icon + u".svg"_s));
        button->setIconSize({20, 20});
    }
}

void frmPageData1::connectButtons()
{
    const std::pair<QAbstractButton *, void (frmPageData1::*)()> handlers[] = {
        {m_ui->cmdAdd, &frmPageData1::cmdAdd_Click},
        {m_ui->cmdEdit, &frmPageData1::cmdEdit_Click},
        {m_ui->cmdUpdate, &frmPageData1::cmdUpdate_Click},
        {m_ui->cmdCancel, &frmPageData1::cmdCancel_Click},
        {m_ui->cmdDelete, &frmPageData1::cmdDelete_Click},
        {m_ui->cmdRefresh, &frmPageData1::cmdRefresh_Click},
        {m_ui->cmdSpellCheck, &frmPageData1::cmdSpellCheck_Click},
        {m_ui->cmdOpenPic, &frmPageData1::cmdOpenPic_Click},
        {m_ui->cmdPaintEditor, &frmPageData1::cmdPaintEditor_Click},
        {m_ui->cmdViewHTML, &frmPageData1::cmdViewHTML_Click},
    };
    for (const auto &[button, handler] : handlers)
        connect(button, &QAbstractButton::clicked, this,
                guarded(m_failures, [this, handler = handler] { (this->*handler)(); }));

    const std::pair<QAbstractButton *, void (clsPageData1::*)()> moves[] = {
        {m_ui->cmdFirst, &clsPageData1::MoveFirst},
        {m_ui->cmdPrevious, &clsPageData1::MovePrevious},
        {m_ui->cmdNext, &clsPageData1::MoveNext},
        {m_ui->cmdLast, &clsPageData1::MoveLast},
    };
    for (const auto &[button, way] : moves)
        connect(button, &QAbstractButton::clicked, this,
                guarded(m_failures, [this, way = way] { move(way); }));

    QPushButton *const browse[] = {m_ui->cmdBrowse_0, m_ui->cmdBrowse_1, m_ui->cmdBrowse_2};
    for (int index = 0; index < 3; ++index)
        connect(browse[index], &QPushButton::clicked, this,
                guarded(m_failures, [this, index] { cmdBrowse_Click(index); }));
    connect(m_ui->cmdHelp, &QPushButton::clicked, this,
            guarded(m_failures, [this] { m_services.workspace.openHelp(u"data1.htm"_s); }));
    connect(m_ui->cmdWord, &QPushButton::clicked, this, guarded(m_failures, [this] { cmdWord_Click(); }));

    auto *save = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_S), this, nullptr, nullptr,
                               Qt::WidgetWithChildrenShortcut);
    connect(save, &QShortcut::activated, this, guarded(m_failures, [this] { cmdUpdate_Click(); }));
}

void frmPageData1::connectRows()
{
    connect(PrimaryCLS.get(), &clsPageData1::MoveComplete, this, [this] {
        showStatus();
        showRow();
    });
    connect(PrimaryCLS.get(), &clsPageData1::DataMemberChanged, this, [this] { showRow(); });
    connect(PrimaryCLS.get(), &clsPageData1::endReached, this, [] { QApplication::beep(); });
}

// ---- buttons

void frmPageData1::tell(Question which, const QString &text, Icon icon, const QString &title)
{
    m_services.prompter.tell(which, {text, title.isEmpty() ? m_services.state.AppTitle : title, icon});
}

template <typename Action>
bool frmPageData1::onRows(Action action)
{
    try {
        action();
        return true;
    } catch (const RunTimeError &error) {
        tell(Question::PageRecordFailed, error.description());
        return false;
    }
}

void frmPageData1::move(void (clsPageData1::*way)())
{
    if (leaveBox())
        onRows([this, way] { (PrimaryCLS.get()->*way)(); });
}

void frmPageData1::cmdAdd_Click()
{
    const Module1 &state = m_services.state;
    const std::pair<Box, QString> defaults[] = {
        {PageNumber, QString::number(state.EditorLastPageNumber + 1)},
        {ProjectName, state.AppOptions.ProjectName},
        {Date, ShortDate::toText(m_services.clock.now().date())},
        {PageStatus, u"OK"_s},
        {ProjectDirectory, state.ProjectDirectory},
        {Layout, u"0"_s},
    };
    onRows([&] {
        PrimaryCLS->AddNew();
        m_ui->lblStatus->setText(u"Add record"_s);
        AddNewFlag = true;
        SetButtons(false);
        for (const auto &[index, text] : defaults) {
            PrimaryCLS->dataMember(u"Primary"_s)->setField(QString::fromUtf16(field(index).column), text);
            box(index).show(text);
        }
    });
}

void frmPageData1::cmdEdit_Click()
{
    m_ui->lblStatus->setText(u"Edit record"_s);
    SetButtons(false);
}

void frmPageData1::cmdDelete_Click()
{
    onRows([this] { PrimaryCLS->Delete(); });
    UpdateNavigation();
}

void frmPageData1::cmdRefresh_Click()
{
    onRows([this] { PrimaryCLS->Requery(); });
}

bool frmPageData1::CheckBlank(Box index, const QString &label)
{
    if (!box(index).text().trimmed().isEmpty())
        return true;
    tell(Question::BlankNotAllowed,
         u"Blank is not allowed in %1 field, please enter data for this field."_s.arg(label));
    return false;
}

bool frmPageData1::mayBeSaved()
{
    if (!CheckBlank(ProjectName, u"Project Name"_s) || !CheckBlank(PageNumber, u"Page Number"_s))
        return false;
    const QString status = normalStatus(box(PageStatus).text());
    if (status != box(PageStatus).text())
        box(PageStatus).enter(status);
    if (status != u"OK"_s)
        tell(Question::PageBlocked,
             u"If the 'Page Status' is not 'OK', the page will not be included into\r\n"
             "automatically generated final documents.\r\n"
             "You can use this field to temporarily block this page.\r\n"
             "When you are ready to bring it back, just change the 'Page Status' \r\n"
             "to 'OK'.\r\n"
             "If you change the 'Page Status' to 'Deleted', the page will not show\r\n"
             "up when you click button '3'. You will have to change it back from\r\n"
             "main manu Edit->'Edit All Page'."_s,
             Icon::Exclamation, u"One page blocked!"_s);
    if (!ShortDate::fromText(box(Date).text())) {
        tell(Question::DateInvalid, u"One of the date fields contains invalid date text.\r\n"
                                    "Please use format of mm/dd/yyyy, i.e. 12/31/2003"_s);
        return false;
    }
    return true;
}

bool frmPageData1::saved()
{
    if (!leaveBox() || !mayBeSaved())
        return false;
    if (AddNewFlag)
        ++m_services.state.EditorLastPageNumber;
    if (!onRows([this] { PrimaryCLS->Update(); }))
        return false;
    m_touched = false;
    SetButtons(true);
    return true;
}

void frmPageData1::cmdUpdate_Click()
{
    if (saved() && m_services.state.EditorAddPage)
        closeTab();
}

void frmPageData1::cmdCancel_Click()
{
    try {
        PrimaryCLS->Cancel();
    } catch (const RunTimeError &) {
        // What could not be dropped goes with the window.
    }
    SetButtons(true);
    if (AddNewFlag)
        closeTab();
    else
        showRow();
}

void frmPageData1::closeTab()
{
    m_services.state.EditorAddPage = false;
    m_touched = false;
    m_services.workspace.deleteTab(property("formID").toInt());
    close();
}

void frmPageData1::closeEvent(QCloseEvent *event)
{
    const Answer answer = m_touched ? m_services.prompter.ask(Question::SavePendingPage, Buttons::YesNoCancel,
                                                              {u"Save the changes of this page?"_s,
                                                               m_services.state.AppTitle, Icon::Question})
                                    : Answer::No;
    if (answer == Answer::Cancel || (answer == Answer::Yes && !saved())) {
        event->ignore();
        return;
    }
    m_touched = false;
    m_services.workspace.setBusyPointer(false);
    event->accept();
}

void frmPageData1::cmdBrowse_Click(int index)
{
    static constexpr std::pair<Index, const char16_t *> files[] = {
        {ScreenShotFilePath, u"Image Files (*.bmp)|*.bmp"},
        {HTMLFilePath, u"HTML Files (*.htm)|*.htm;*.html"},
        {WordFilePath, u"Word Files (*.doc)|*.doc"},
    };
    const AppOptions &options = m_services.state.AppOptions;
    FilePrompt prompt;
    prompt.title = u"Open"_s;
    prompt.directory = FileSystem::join(options.BaseDirectory, options.ProjectName);
    prompt.filter = QString::fromUtf16(files[index].second);
    if (const auto path = m_services.prompter.openFile(Question::ChoosePageFile, prompt))
        box(files[index].first).enter(*path);
}

/// Empty, and the user has been told, where there is no file.
QString frmPageData1::imagePath()
{
    const QString path = box(ScreenShotFilePath).text();
    if (path.isEmpty()) {
        tell(Question::ImagePathEmpty, u"Screenshot file path is empty."_s);
        return {};
    }
    if (!m_services.state.FileSystem.fileExists(path)) {
        tell(Question::ImageFileMissing, u"Screenshot file not exist."_s);
        return {};
    }
    return path;
}

void frmPageData1::cmdPaintEditor_Click()
{
    if (const QString path = imagePath(); !path.isEmpty())
        m_services.workspace.openPaintEditor(path);
}

void frmPageData1::cmdOpenPic_Click()
{
    Module1 &state = m_services.state;
    const QString path = imagePath();
    if (path.isEmpty())
        return;
    state.CurrentImagePath = path;
    state.ImageFileRequested = true;
    switch (state.AppOptions.OptionFlags[PaintTool]) {
    case 0:
        m_services.workspace.openViewer(ViewerSelection::None);
        break;
    case 1:
        m_services.programs.paint(state.AppOptions.PaintProgram, path);
        break;
    default:
        break;
    }
}

void frmPageData1::cmdViewHTML_Click()
{
    m_services.state.ContentsPagePath = box(HTMLFilePath).text();
    m_services.state.ShowContentsRequested = true;
    m_services.workspace.openContentsPage();
}

void frmPageData1::cmdWord_Click()
{
    WordFiles::open(m_services.wordProcessor, m_services.prompter, box(WordFilePath).text());
}

// ---- spelling

QString frmPageData1::SpellChecker(const QString &text)
{
    return m_services.state.SpellCheckText = m_services.spelling.correct(text);
}

void frmPageData1::cmdSpellCheck_Click()
{
    m_services.state.WordInstalled = m_services.spelling.installed();
    if (!m_services.state.WordInstalled) {
        tell(Question::SpellingNotInstalled, u"Spell Check function is based on Microsoft Office.\r\n"
                                             "Due to no Microsoft Office is installed on this PC,\r\n"
                                             "cannot do spell check."_s);
        return;
    }
    const int tab = m_ui->TabStrip1->currentIndex() + 1;
    for (const Index index : spellChecked(tab)) {
        const QString text = box(index).text();
        if (text.isEmpty())
            continue;
        const QString corrected = SpellChecker(text);
        if (m_services.spelling.cancelled())
            return; // the boxes before this one stay corrected
        if (corrected != text)
            box(index).enter(corrected);
    }
    tell(Question::SpellingCompleted,
         u"Spell Check Completed in following yellow fields:\r\n\r\n"_s +
             (tab == 1 ? u"Page Title\r\nSub Title\r\nBody Text\r\nNote 1\r\nNote 2"_s
                       : u"My Own Note\r\nBook Title\r\nChapter\r\nSection"_s),
         Icon::Information, u"Spell Checker"_s);
}
