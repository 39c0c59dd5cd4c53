#pragma once

#include <QString>
#include <QStringList>

/// What a newly opened viewer loads from its list of files, besides what ImageFileRequested asks for.
enum class ViewerSelection {
    None,
    FirstFile,
    CurrentImage ///< the file that Module1::CurrentImagePath names
};

/// How one screen asks for another without knowing it. The main window implements it; everybody else sees
/// only this. Requests are handed over through Module1's variables where there is more to say than a path.
class Workspace
{
public:
    virtual ~Workspace() = default;

    /// Property of the screen in a tab: the topic of the help that F1 opens while it is seen, "option.htm".
    static constexpr const char *helpTopic = "helpTopic";

    /// The text of the project box, untrimmed, and the names of its list.
    virtual QString projectText() const = 0;
    virtual QStringList projectNames() const = 0;
    virtual void setProjectText(const QString &name) = 0;
    virtual void addProjectName(const QString &name) = 0;
    /// The first entry of that name; the project box keeps its text.
    virtual void removeProjectName(const QString &name) = 0;

    /// Opens a new snapshot viewer as a tab "Screen Shots". It shows Module1::CurrentImagePath if
    /// ImageFileRequested is set, and its folder, else the folder of the project.
    virtual void openViewer(ViewerSelection select) = 0;

    /// Shows a picture file in the paint editor; an empty path shows the editor as it is.
    virtual void openPaintEditor(const QString &path) = 0;
    /// Shows the paint editor as it is, as a tab "Screen Shots".
    virtual void openPaintTab() = 0;

    /// Shows Module1::ContentsPagePath in the browser, as a tab "Contents".
    virtual void openContentsPage() = 0;

    /// Opens the page editor as a tab; which pages it shows is said by the Editor... variables of Module1.
    virtual void openPageEditor(const QString &caption) = 0;

    /// Opens the page list as a tab.
    virtual void openPageList(const QString &caption) = 0;

    /// Closes the tab of a child window: its property "formID" names it.
    virtual void deleteTab(int id) = 0;

    /// Opens a topic ("multi.htm") of the help.
    virtual void openHelp(const QString &topic) = 0;

    /// The hourglass, or the default pointer shape.
    virtual void setBusyPointer(bool busy) = 0;

    /// Ends the program without asking or saving anything more.
    virtual void endAtOnce() = 0;

    virtual void minimise() = 0;
    virtual void restoreNormal() = 0;

    /// Closes the tab that shows generated pages, so that nothing holds them.
    virtual void closeWebSearchTab() = 0;

    /// Screens that show pages of the database read them again.
    virtual void refreshPageViews() = 0;

    /// Says in the status line what has been done; the text stays until the next one.
    virtual void showStatus(const QString &text) = 0;
};
