#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

/// The stream "\005SummaryInformation", [MS-OLEPS]: what file managers show of a document.
QByteArray wordSummary(const QString &title, const QDateTime &created);

/// The stream "\001CompObj", [MS-OLEDS]: what the file is.
QByteArray wordObjectDescription();

/// The class identifier of a Word document.
QByteArray wordClassId();
