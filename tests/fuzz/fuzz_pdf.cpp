// PDF documents of any texts, read back with somebody else's reader. With SHOTLY_FUZZ_KEEP, a folder, they
// stay.

#include "fuzz/DocumentInput.h"

#include "platform/office/PdfDocument.h"
#include "platform/office/Qpdf.h"

using namespace Qt::Literals::StringLiterals;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr PageFormat a4 = {QSize(11906, 16838), 1417};
    const DocumentContent content = documentOf(data, size, 20);
    const QString path = Fuzz::path(u"guide.pdf"_s);
    DocumentPictures pictures;
    writePdfDocument(content, pictures, a4, path, {});

    QPDF pdf;
    pdf.setSuppressWarnings(true);
    pdf.processFile(path.toUtf8().constData());
    Fuzz::require(!QPDFPageDocumentHelper(pdf).getAllPages().empty(), "there is a page");
    Fuzz::require(!pdf.anyWarnings(), "nothing is wrong with the file");
    if (static int number = 0; qEnvironmentVariableIsSet("SHOTLY_FUZZ_KEEP"))
        Fuzz::write(qEnvironmentVariable("SHOTLY_FUZZ_KEEP") + u"/%1.pdf"_s.arg(++number), Fuzz::read(path));
    return 0;
}
