#pragma once

#include "pagestore/clsPageData1.h"
#include "pagestore/frmPageData1Box.h"
#include "pagestore/PageDatabase.h"
#include "platform/Clock.h"
#include "platform/ExternalPrograms.h"
#include "platform/qt/Guarded.h"
#include "platform/Spelling.h"
#include "platform/WordProcessor.h"
#include "state/Workspace.h"

#include <QTimer>
#include <QWidget>

#include <array>

namespace Ui
{
class frmPageData1;
}

/// What the page editor works with; references must outlive it.
struct PageEditorServices {
    Module1 &state;
    PageDatabase &database;
    Prompter &prompter;
    Workspace &workspace;
    ExternalPrograms &programs;
    Spelling &spelling;
    Clock &clock;
    WordProcessor &wordProcessor;
};

/// The page editor: the texts of one page at a time, bound to the rows that its opener has asked for. A tab
/// of the main window.
///
/// What is typed is pending until Save, or a move to another page, writes it; closing with something pending
/// asks. The constructor throws RunTimeError when the rows cannot be opened.
class frmPageData1 : public QWidget
{
    Q_OBJECT

public:
    explicit frmPageData1(const PageEditorServices &services);
    ~frmPageData1() override;

    /// The text with its spelling corrected; the last one is kept in Module1::SpellCheckText.
    QString SpellChecker(const QString &text);

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    using Box = PageFields::Index;

    void bindBoxes();
    void connectButtons();
    void connectRows();
    void describeMoveButtons();

    void SetButtons(bool browsing);
    void UpdateNavigation();
    void showStatus();
    void showRow();
    void showThumbnail();
    QString storedText(Box box) const;

    void txtFields_Change(BoundBox &box);
    void txtFields_Validate(BoundBox &box);
    bool leaveBox();
    bool CheckBlank(Box box, const QString &label);
    bool mayBeSaved();
    bool saved();
    void closeTab();

    void cmdAdd_Click();
    void cmdEdit_Click();
    void cmdUpdate_Click();
    void cmdCancel_Click();
    void cmdDelete_Click();
    void cmdRefresh_Click();
    void cmdSpellCheck_Click();
    void cmdBrowse_Click(int index);
    void cmdOpenPic_Click();
    void cmdPaintEditor_Click();
    QString imagePath();
    void cmdViewHTML_Click();
    void cmdWord_Click();
    template <typename Action>
    bool onRows(Action action);
    void move(void (clsPageData1::*way)());

    BoundBox &box(Box index) const { return *txtFields[static_cast<std::size_t>(index)]; }
    void tell(Question which, const QString &text, Icon icon = Icon::None, const QString &title = {});

    PageEditorServices m_services;
    FailureBox m_failures;
    std::unique_ptr<Ui::frmPageData1> m_ui;
    std::array<BoundBox *, PageFields::count> txtFields{};
    std::unique_ptr<clsPageData1> PrimaryCLS;
    bool AddNewFlag = false;
    bool m_touched = false; ///< the user has typed something that is not saved
    QTimer m_thumbnailTimer;
    QImage m_thumbnail;
};
