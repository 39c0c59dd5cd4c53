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
QString deleteProject(const QString &project);
QString deleteAllProjects();
QString markImageDeleted(const QString &imagePath);
QString setHtmlPath(std::int64_t id, const QString &path);
QString htmlDocumentPages(const QString &project);
QString wordDocumentPages(const QString &project);

/// The image paths of a project's pages; asked after a registration, which is silent.
QString imagePaths(const QString &project);
} // namespace Statements
