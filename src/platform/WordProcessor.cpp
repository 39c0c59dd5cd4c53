#include "platform/WordProcessor.h"

QString WordProcessor::pdfPathOf(const QString &documentPath)
{
    const qsizetype dot = documentPath.lastIndexOf(u'.');
    const bool inName = dot > documentPath.lastIndexOf(u'/');
    return (inName ? documentPath.first(dot) : documentPath) + QStringLiteral(".pdf");
}
