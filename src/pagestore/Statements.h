#pragma once

#include <QDate>
#include <QString>

#include <cstdint>

/// Every SQL statement of the program, in one place. Text values are spliced in between double quotes (a
/// double quote inside is written twice), dates between "#" signs as mm/dd/yyyy.
namespace Statements
{
inline constexpr const char16_t *pageTable = u"PageData";

QString projectNames();
/// Each project's name and the number of its pages.
QString projectSizes();
QString projectDirectory(const QString &project);

/// Pages of copied images hold no directory: how many of the project's pages are such, and the directory of
/// the first page that is not.
QString pagesWithoutDirectory(const QString &project);
QString storedProjectDirectory(const QString &project);

QString firstImage(const QString &project);
QString highestPageNumber(const QString &project);
QString pageCount(const QString &project);
QString pageExists(std::int64_t id);

struct CapturedPage {
    QString project;
    QString imagePath;
    QString status;
    std::int32_t pageNumber = 0;
    QDate date;
    QString directory; ///< base directory and project name
};
QString insertCapturedPage(const CapturedPage &page);
QString insertCopiedImage(const QString &project, const QString &imagePath, std::int32_t pageNumber,
                          QDate date);

QString restartProject(const QString &project);
/// How many pages show an image; asked after an insertion, which is silent.
QString pagesOfImage(const QString &imagePath);

QString deleteProject(const QString &project);
QString deleteAllProjects();
QString markImageDeleted(const QString &imagePath);

/// The rows of the page editor: all pages of a project, those whose image was not deleted, all pages of all.
QString editedProjectPages(const QString &project);
QString editedPagesNotDeleted(const QString &project);
QString editedPages();

/// The rows of the page list: of a project, or found by words. With `useOr` all pages of the project and
/// every page that holds the text; otherwise those of the project that hold it. An empty project means every
/// one, an empty text any. "%" and "_" in the text are wildcards. `order` is a list of columns.
inline constexpr const char16_t *pageOrder = u"ProjectName, PageNumber";
QString listedPages(const QString &project);
QString foundPages(bool useOr, const QString &project, const QString &text,
                   const QString &order = QString::fromUtf16(pageOrder));

/// The pages of a page's project in their order, and the numbering of one.
QString numberedPages(std::int64_t id);
QString setPageNumber(std::int64_t id, std::int32_t number);

/// The path of a page's generated file, for rows that were opened without it.
QString htmlPath(std::int64_t id);

QString setHtmlPath(std::int64_t id, const QString &path);
QString setImagePath(std::int64_t id, const QString &path);
/// Another directory for a project, in which nothing has been generated yet.
QString moveProject(const QString &project, const QString &directory);
QString htmlDocumentPages(const QString &project);
QString wordDocumentPages(const QString &project);

/// The image paths of a project's pages; asked after a registration, which is silent.
QString imagePaths(const QString &project);
} // namespace Statements
