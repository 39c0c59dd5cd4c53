#pragma once

#include "capture/mHotKey.h"
#include "platform/ExternalPrograms.h"
#include "platform/qt/Guarded.h"
#include "platform/WordProcessor.h"
#include "settings/frmOptionControl.h"
#include "state/Workspace.h"

#include <QWidget>

#include <map>
#include <vector>

class QBoxLayout;
class QTabWidget;
struct Module1;

/// The options dialog: every setting of the options file, on the pages of a tab strip. A tab of the main
/// window.
///
/// Some clicks change Module1::AppOptions at once, and that holds until the program ends; Save takes over the
/// rest and writes the file, Reset writes the factory settings, Cancel writes nothing. What stands where, and
/// which control edits which option, is said by the table of frmOptionRows.h; here are the rules between
/// them.
class frmOption : public QWidget
{
    Q_OBJECT

public:
    /// References must outlive the dialog.
    struct Services {
        Module1 &state;
        Prompter &prompter;
        Workspace &workspace;
        ExternalPrograms &programs;
        const WordProcessor &wordProcessor;
        const mHotKey &hotKeys;
    };

    explicit frmOption(const Services &services);

private:
    using Handler = void (frmOption::*)();

    // frmOptionPages.cpp
    void buildPages();
    void addButtons(QBoxLayout *column);
    void fillPage(OptionRows::Page page, QWidget *content);
    void fillBox(OptionRows::Box which, QBoxLayout *lines);
    void addRow(OptionControl &control, QBoxLayout *lines);
    void addBeside(const QString &control, QBoxLayout *line);
    void fillHotKeys(QBoxLayout *lines);
    void fillStyles(OptionRows::Box box, QBoxLayout *lines);
    QWidget *makePreview(OptionRows::Box box);
    QWidget *makeButton(const QString &name, const QString &caption, Handler handler, QWidget *parent);

    void connectControls();
    void loadControls();
    OptionControl &control(const QString &name) const { return *m_controls.at(name); }
    std::vector<OptionControl *> makeControls(OptionRows::Box box, QWidget *parent);
    void turnTo(const OptionControl &control);

    void controlChanged(OptionControl &control);
    void list_Change(OptionControl &control);
    void list_Validate(OptionControl &control);
    void store(const OptionControl &control);

    void chkDefMouse_Click();
    void optFormat_Click();
    void chkAutoConvertPDF_Click();
    bool wordFormatPossible();
    void dropPdfConversion();
    void cmbSpicFpath_Validate();
    void lblBaseDir_Change();
    void txtFileNamePrefix_Validate();
    void cmdBrowseM_Click();
    void cmdBrowseS_Click();
    void cmdLayout_Click();
    void cmdPaintTest_Click();
    void cmdHelp_Click();
    void cmdCancel_Click();
    void closeTab();

    // frmOptionSave.cpp
    void cmdSave_Click();
    void cmdReset_Click();
    void checkStopButton();
    bool listsAreChosen();
    void checkSnapshotLocation();
    template <typename Write>
    bool written(Write write);

    // frmOptionHotKeys.cpp
    void cmbAction_Click();
    void cmbHotKey_Click();
    void Command1_Click();
    void markHotKeys();

    // frmOptionStyles.cpp
    void cmdWfont_Click(int role);
    void showPreviews();

    void tell(Question which, const QString &text);
    void tellBlank();

    const QString desktop = QStringLiteral("Desktop"); ///< the user's own, as a location

    Services m_services;
    FailureBox m_failures;
    std::map<QString, OptionControl *> m_controls;
    QTabWidget *TabStrip1;
    QWidget *fraMouse = nullptr;
};
