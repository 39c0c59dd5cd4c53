// Word documents of any texts. With SHOTLY_FUZZ_KEEP, a folder, each document stays there for another reader.

#include "fuzz/DocumentInput.h"

#include "platform/office/WordBinary.h"

using namespace Qt::Literals::StringLiterals;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr PageFormat a4 = {QSize(11906, 16838), 1417};
    const DocumentContent content = documentOf(data, size, 200);
    const QString path = Fuzz::path(u"guide.doc"_s);
    DocumentPictures pictures;
    writeWordDocument(content, pictures, a4, path, {});

    const QByteArray file = Fuzz::read(path);
    Fuzz::require(file.startsWith("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"), "a compound file begins so");
    Fuzz::require(file.size() % 512 == 0, "a compound file is made of sectors");
    if (static int number = 0; qEnvironmentVariableIsSet("SHOTLY_FUZZ_KEEP"))
        Fuzz::write(qEnvironmentVariable("SHOTLY_FUZZ_KEEP") + u"/%1.doc"_s.arg(++number), file);
    return 0;
}
