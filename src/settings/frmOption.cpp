#include "settings/frmOption.h"

#include "documents/PdfConversion.h"
#include "platform/ApplicationFolder.h"
#include "settings/OptionsStore.h"
#include "state/Module1.h"

#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QShortcut>
#include <QTabWidget>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int longestPrefix = 100;
const QString folderMissing = u"Folder not exist, please click 'Browse' button and select a directory."_s;
} // namespace

frmOption::frmOption(const Services &services)
    : m_services(services), m_failures(services.prompter), TabStrip1(new QTabWidget(this))
{
    setObjectName("frmOption"_L1);
    setWindowTitle(u"Options"_s);
    setProperty(Workspace::helpTopic, u"option.htm"_s);
    TabStrip1->setObjectName("TabStrip1"_L1);
    buildPages();
    auto *prefix = findChild<QLineEdit *>(u"txtFileNamePrefix"_s);
    prefix->setMaxLength(longestPrefix);
    // It becomes a part of file names.
    prefix->setValidator(new QRegularExpressionValidator(QRegularExpression(u"[^/\\x00-\\x1f]*"_s), prefix));
    loadControls();
    connectControls();
    // Once it is shown.
    QTimer::singleShot(0, this, [this] { TabStrip1->setFocus(); });
}

void frmOption::connectControls()
{
    for (const auto &[name, each] : m_controls) {
        OptionControl *one = each;
        connect(one, &OptionControl::changed, this,
                guarded(m_failures, [this, one] { controlChanged(*one); }));
        if (!one->isList())
            continue;
        connect(one, &OptionControl::typed, this, guarded(m_failures, [this, one] { list_Change(*one); }));
        if (!one->row().key.isEmpty())
            connect(one, &OptionControl::left, this,
                    guarded(m_failures, [this, one] { list_Validate(*one); }));
    }
    connect(&control(u"cmbSpicFpath"_s), &OptionControl::left, this,
            guarded(m_failures, [this] { cmbSpicFpath_Validate(); }));
    connect(&control(u"txtFileNamePrefix"_s), &OptionControl::left, this,
            guarded(m_failures, [this] { txtFileNamePrefix_Validate(); }));
    auto *save = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_S), this, nullptr, nullptr,
                               Qt::WidgetWithChildrenShortcut);
    connect(save, &QShortcut::activated, this, guarded(m_failures, [this] { cmdSave_Click(); }));
}

/// Fills the controls from the options in memory.
void frmOption::loadControls()
{
    for (const auto &[name, each] : m_controls) {
        if (!each->row().key.isEmpty())
            each->show(OptionsStore::textOf(m_services.state.AppOptions, OptionsStore::row(each->row().key)));
    }
    control(u"cmbAction"_s).choose(0);
    cmbAction_Click();
    markHotKeys();
    showPreviews();
    fraMouse->setEnabled(control(u"chkDefMouse"_s).index() == 1);
}

void frmOption::controlChanged(OptionControl &changed)
{
    static const std::map<QString, Handler> handlers = {
        {u"chkDefMouse"_s, &frmOption::chkDefMouse_Click},
        {u"optFormat"_s, &frmOption::optFormat_Click},
        {u"cmbWordProcessor"_s, &frmOption::optFormat_Click},
        {u"chkAutoConvertPDF"_s, &frmOption::chkAutoConvertPDF_Click},
        {u"cmbAction"_s, &frmOption::cmbAction_Click},
        {u"cmbKey1"_s, &frmOption::cmbHotKey_Click},
        {u"cmbHotKey"_s, &frmOption::cmbHotKey_Click},
    };
    if (changed.row().atOnce)
        store(changed);
    if (const auto handler = handlers.find(changed.row().control); handler != handlers.end())
        (this->*handler->second)();
    else if (changed.row().role >= 0)
        showPreviews();
}

void frmOption::store(const OptionControl &from)
{
    const QString value = from.value();
    // A list or a group in which nothing is chosen leaves its option as it is.
    if (!from.row().key.isEmpty() && (from.isText() || !value.isEmpty()))
        OptionsStore::assign(m_services.state.AppOptions, OptionsStore::row(from.row().key), value);
}

void frmOption::tell(Question which, const QString &text)
{
    m_services.prompter.tell(which, {text, m_services.state.AppTitle});
}

void frmOption::tellBlank()
{
    tell(Question::OptionBlank, u"Blank is not allowed, please select one from the list."_s);
}

// ---- list-only combo boxes

void frmOption::list_Change(OptionControl &list)
{
    const bool blank = list.text().trimmed().isEmpty();
    if (blank)
        tellBlank();
    else
        tell(Question::OptionNotInList, u"Please select one from the list."_s);
    list.choose(0);
    controlChanged(list);
}

void frmOption::list_Validate(OptionControl &list)
{
    if (list.index() >= 0)
        return;
    tellBlank();
    list.choose(0);
    controlChanged(list);
}

// ---- rules between options

void frmOption::chkDefMouse_Click()
{
    fraMouse->setEnabled(control(u"chkDefMouse"_s).index() == 1);
}

void frmOption::dropPdfConversion()
{
    control(u"chkAutoConvertPDF"_s).choose(0);
    m_services.state.AppOptions.AutoConvertWord2PDF = 0;
}

/// What Word documents need is there, or none are wanted. Else the format becomes HTML.
bool frmOption::wordFormatPossible()
{
    OptionControl &format = control(u"optFormat"_s);
    if (format.index() <= 0 || m_services.wordProcessor.wordProcessorInstalled())
        return true;
    format.choose(0);
    m_services.state.AppOptions.FinalDocumentFormat = 0;
    dropPdfConversion();
    tell(Question::FormatNeedsWord, u"Since your system does not have Microsoft Word installed,\r\n"
                                    "only HTML format documents will be created."_s);
    return false;
}

void frmOption::optFormat_Click()
{
    if (!wordFormatPossible())
        return;
    store(control(u"optFormat"_s));
    if (control(u"optFormat"_s).index() > 0 || control(u"chkAutoConvertPDF"_s).index() == 0)
        return;
    tell(Question::PdfNeedsWordFormat,
         u"Shotly can only convert Microsoft Word files to Adobe PDF files. Since you do not\r\n"
         "want to create a Word file, no PDF file will be created."_s);
    dropPdfConversion();
}

void frmOption::chkAutoConvertPDF_Click()
{
    optFormat_Click();
    if (control(u"chkAutoConvertPDF"_s).index() == 1 &&
        !PdfConversion::AdobePdfPrinterInstalled(m_services.wordProcessor, m_services.prompter))
        dropPdfConversion();
}

// ---- folders and texts

void frmOption::cmbSpicFpath_Validate()
{
    OptionControl &location = control(u"cmbSpicFpath"_s);
    const QString text = location.text().trimmed();
    if (text.isEmpty()) {
        tellBlank();
        location.show(desktop);
    } else if (text != desktop && !m_services.state.FileSystem.folderExists(text)) {
        tell(Question::OptionFolderMissing, folderMissing);
    }
}

void frmOption::lblBaseDir_Change()
{
    OptionControl &folder = control(u"lblBaseDir"_s);
    if (folder.text().trimmed().isEmpty()) {
        tellBlank();
        folder.show(ApplicationFolder::defaultBaseDirectory());
    } else if (!m_services.state.FileSystem.folderExists(folder.text())) {
        tell(Question::OptionFolderMissing, folderMissing);
    }
}

void frmOption::txtFileNamePrefix_Validate()
{
    OptionControl &prefix = control(u"txtFileNamePrefix"_s);
    if (!prefix.text().trimmed().isEmpty())
        return;
    tell(Question::FileNamePrefixBlank, u"Blank is not allowed. Default prefix is 'Shotly'."_s);
    prefix.show(u"Shotly"_s);
}

void frmOption::cmdBrowseM_Click()
{
    OptionControl &folder = control(u"lblBaseDir"_s);
    const auto chosen =
        m_services.prompter.pickFolder(Question::ChooseOptionFolder, u"Select a Folder"_s, folder.text());
    if (!chosen)
        return;
    folder.show(*chosen);
    lblBaseDir_Change();
    store(folder);
}

void frmOption::cmdBrowseS_Click()
{
    OptionControl &location = control(u"cmbSpicFpath"_s);
    const QString start = location.text() == desktop ? QString() : location.text();
    const auto chosen =
        m_services.prompter.pickFolder(Question::ChooseOptionFolder, u"Select a Folder"_s, start);
    location.show(chosen && !chosen->isEmpty() ? *chosen : desktop);
}

// ---- buttons

void frmOption::cmdLayout_Click()
{
    const bool above = control(u"cmbLayout"_s).index() == 1;
    m_services.workspace.openHelp(above ? u"style2.htm"_s : u"style1.htm"_s);
}

void frmOption::cmdPaintTest_Click()
{
    const int tool = control(u"cmbPaintSoftware"_s).index();
    try {
        if (tool == 0)
            m_services.workspace.openPaintTab();
        else if (tool == 1)
            m_services.programs.paint(control(u"txtPaintProgram"_s).text().trimmed(), {});
    } catch (const RunTimeError &error) {
        tell(Question::PaintToolMissing, error.description());
    }
}

void frmOption::cmdHelp_Click()
{
    m_services.workspace.openHelp(u"option.htm"_s);
}

void frmOption::cmdCancel_Click()
{
    closeTab();
}

void frmOption::closeTab()
{
    m_services.workspace.deleteTab(property("formID").toInt());
    close();
}
