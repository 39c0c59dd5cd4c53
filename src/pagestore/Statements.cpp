#include "pagestore/Statements.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
QString quoted(QString text)
{
    return u'"' + text.replace(u'"', u"\"\""_s) + u'"';
}

QString documentPages(const QString &project, const QString &fileColumn)
{
    return u"select PageTitle,SubTitle,ScreenShotFilePath,PageSummary,"
           "Note1,Note2, Layout, PageNumber, [ID], "_s +
           fileColumn + u" from PageData where ProjectName="_s + quoted(project) + u" and PageStatus ="_s +
           quoted(u"OK"_s) + u" order by PageNumber "_s;
}
} // namespace

QString Statements::projectNames()
{
    return u"select distinct ProjectName from PageData"_s;
}

QString Statements::projectSizes()
{
    return u"select ProjectName, count(*) from PageData group by ProjectName order by ProjectName"_s;
}

QString Statements::projectDirectory(const QString &project)
{
    return u"select top 1 ProjectDirectory from PageData where ProjectName="_s + quoted(project);
}

QString Statements::storedProjectDirectory(const QString &project)
{
    return projectDirectory(project) + u" and ProjectDirectory <> "_s + quoted(QString());
}

QString Statements::pagesWithoutDirectory(const QString &project)
{
    return pageCount(project) + u" and (ProjectDirectory is null or ProjectDirectory ="_s +
           quoted(QString()) + u')';
}

QString Statements::firstImage(const QString &project)
{
    return u"select top 1 ScreenShotFilePath from PageData where ProjectName="_s + quoted(project) +
           u" and PageStatus ="_s + quoted(u"OK"_s);
}

QString Statements::highestPageNumber(const QString &project)
{
    return u"select PageNumber from PageData where ProjectName="_s + quoted(project) +
           u" order by PageNumber desc"_s;
}

QString Statements::pageCount(const QString &project)
{
    return u"select count(*) from PageData where ProjectName ="_s + quoted(project);
}

QString Statements::pageExists(std::int64_t id)
{
    return u"select count(*) from PageData where [ID]="_s + QString::number(id);
}

QString Statements::insertCapturedPage(const CapturedPage &page)
{
    return u"Insert into PageData(ProjectName,ScreenShotFilePath,PageStatus, PageNumber, [Date], "
           "ProjectDirectory) values("_s +
           quoted(page.project) + u',' + quoted(page.imagePath) + u',' + quoted(page.status) + u',' +
           QString::number(page.pageNumber) + u", #"_s + page.date.toString(u"MM/dd/yyyy"_s) + u"#,"_s +
           quoted(page.directory) + u')';
}

QString Statements::insertCopiedImage(const QString &project, const QString &imagePath,
                                      std::int32_t pageNumber, QDate date)
{
    return u"Insert into PageData(ProjectName,ScreenShotFilePath,PageStatus, PageNumber, [Date], "
           "Layout, OrderInPage ) values("_s +
           quoted(project) + u',' + quoted(imagePath) + u',' + quoted(u"OK"_s) + u',' +
           QString::number(pageNumber) + u", #"_s + date.toString(u"MM-dd-yyyy"_s) + u"#, 0, 0 )"_s;
}

QString Statements::restartProject(const QString &project)
{
    return u"delete from PageData where ProjectName="_s + quoted(project);
}

QString Statements::pagesOfImage(const QString &imagePath)
{
    return u"select count(*) from PageData where ScreenShotFilePath="_s + quoted(imagePath);
}

QString Statements::deleteProject(const QString &project)
{
    return u"delete from PageData where ProjectName = "_s + quoted(project);
}

QString Statements::deleteAllProjects()
{
    return u"delete from PageData where 1 = 1 "_s;
}

QString Statements::markImageDeleted(const QString &imagePath)
{
    return u"update PageData set [PageStatus] ="_s + quoted(u"Deleted"_s) +
           u" where [ScreenShotFilePath]="_s + quoted(imagePath);
}

QString Statements::editedProjectPages(const QString &project)
{
    return u"select PageTitle,SubTitle,ScreenShotFilePath,PageSummary,Note1,Note2,"
           "PageStatus,[Date],VersionNumber,KeyWord,ProjectName,BookTitle,Chapter,[Section],"
           "PageNumber,ID,Layout,OrderInPage, MyOwnNotes, WordFilePath, ProjectDirectory from PageData where "
           "[ProjectName]="_s +
           quoted(project);
}

QString Statements::editedPagesNotDeleted(const QString &project)
{
    return u"select * from PageData where ProjectName="_s + quoted(project) + u" and [PageStatus] <> "_s +
           quoted(u"Deleted"_s);
}

QString Statements::editedPages()
{
    return u"select PageTitle,SubTitle,ScreenShotFilePath,PageSummary,Note1,Note2,PageStatus,[Date],"
           "VersionNumber,KeyWord,ProjectName,BookTitle,Chapter,[Section],PageNumber,ID,Layout,OrderInPage, "
           "MyOwnNotes, WordFilePath, ProjectDirectory from PageData"_s;
}

QString Statements::listedPages(const QString &project)
{
    return u"select [ID],ProjectName,PageNumber, PageTitle,PageStatus,"
           "ScreenShotFilePath, ProjectName, [Date] from PageData where ProjectName="_s +
           quoted(project) + u" Order by ProjectName, PageNumber"_s;
}

QString Statements::numberedPages(std::int64_t id)
{
    return u"select [ID], PageNumber from PageData where ProjectName=(select ProjectName from PageData where "
           "[ID]=%1) order by PageNumber, [ID]"_s.arg(id);
}

QString Statements::setPageNumber(std::int64_t id, std::int32_t number)
{
    return u"update PageData set PageNumber=%1 where [ID]=%2"_s.arg(number).arg(id);
}

QString Statements::foundPages(bool useOr, const QString &project, const QString &text, const QString &order)
{
    const QString head = u"select [ID],ProjectName,PageNumber,PageTitle,PageStatus,"
                         "ScreenShotFilePath,ProjectName, [Date] from PageData  where "_s;
    const QString condition =
        project.isEmpty() ? u" ProjectName like "_s + quoted(u"%"_s) : u" ProjectName = "_s + quoted(project);
    const QString ordered = u" Order by "_s + order;
    if (text.isEmpty())
        return head + condition + ordered;
    const QString joiner = useOr && !project.isEmpty() ? u" or "_s : u" and "_s;
    const QString pattern = quoted(u'%' + text + u'%');
    return head + condition + joiner + u" ( PageTitle like "_s + pattern + u" Or SubTitle Like "_s + pattern +
           u" Or [Keyword] Like "_s + pattern + u" Or PageSummary Like "_s + pattern + u" ) "_s + ordered;
}

QString Statements::htmlPath(std::int64_t id)
{
    return u"select HTMLFilePath from PageData where [ID]="_s + QString::number(id);
}

QString Statements::setHtmlPath(std::int64_t id, const QString &path)
{
    return u"update PageData set HTMLFilePath="_s + quoted(path) + u" where [ID]="_s + QString::number(id);
}

QString Statements::setImagePath(std::int64_t id, const QString &path)
{
    return u"update PageData set ScreenShotFilePath="_s + quoted(path) + u" where [ID]="_s +
           QString::number(id);
}

QString Statements::moveProject(const QString &project, const QString &directory)
{
    return u"update PageData set HTMLFilePath=null, ProjectDirectory="_s + quoted(directory) +
           u" where ProjectName="_s + quoted(project);
}

QString Statements::htmlDocumentPages(const QString &project)
{
    return documentPages(project, u"HTMLFilePath"_s);
}

QString Statements::wordDocumentPages(const QString &project)
{
    return documentPages(project, u"WordFilePath"_s);
}

QString Statements::imagePaths(const QString &project)
{
    return u"select ScreenShotFilePath from PageData where ProjectName="_s + quoted(project);
}
