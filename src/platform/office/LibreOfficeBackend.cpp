#include "platform/office/LibreOfficeBackend.h"

#include "platform/AtomicFile.h"
#include "platform/office/DocumentTemplate.h"
#include "platform/office/FlatOdt.h"
#include "platform/RunTimeError.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

OdtSkeleton LibreOfficeBackend::skeletonFor(const DocumentContent &content, const DocumentWork &work) const
{
    const QString &path = content.templatePath;
    if (m_template == Template::Ignored || path.isEmpty() || DocumentTemplate::isDelivered(path))
        return OdtSkeleton::plain(PageFormat::ofLocale());
    return DocumentTemplate::read(path, m_office, work.stop);
}

void LibreOfficeBackend::save(const DocumentContent &content, DocumentPictures &pictures, const QString &path,
                              const DocumentWork &work)
{
    const OdtSkeleton skeleton = skeletonFor(content, work);
    const auto writeInput = [&](const QString &input) {
        QFile file(input);
        if (!file.open(QIODevice::WriteOnly))
            throw RunTimeError(RunTimeError::PathAccess,
                               u"Cannot write a temporary file: "_s + file.errorString());
        FlatOdt::write(content, pictures, skeleton, file, work);
        if (!file.flush())
            throw RunTimeError(RunTimeError::DiskFull,
                               u"Cannot write a temporary file: "_s + file.errorString());
    };
    m_office.convert({u"fodt"_s, {}, u"doc"_s, u"MS Word 97"_s}, writeInput, path, work.stop);
}

void LibreOfficeBackend::savePdf(const DocumentContent &, DocumentPictures &, const QString &documentPath,
                                 const QString &pdfPath, const DocumentWork &work)
{
    convertFile(documentPath, pdfPath, work);
}

void LibreOfficeBackend::convertFile(const QString &documentPath, const QString &pdfPath,
                                     const DocumentWork &work)
{
    const QFileInfo document(documentPath);
    if (!document.isFile())
        throw RunTimeError(RunTimeError::WordFileMissing, u"There is no file \"%1\""_s.arg(documentPath));
    m_office.convert(
        {u"doc"_s, {}, u"pdf"_s, QString::fromLatin1(losslessPdf)},
        [&](const QString &copy) { AtomicFile::copy(documentPath, copy); }, pdfPath, work.stop);
}

void LibreOfficeBackend::open(const QString &path, bool rewritten)
{
    m_office.show(path, rewritten);
}
