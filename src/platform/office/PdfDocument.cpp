#include "platform/office/PdfDocument.h"

#include "platform/AtomicFile.h"
#include "platform/office/PdfFonts.h"
#include "platform/office/PdfStructure.h"
#include "platform/office/PictureShapes.h"
#include "platform/RunTimeError.h"

#include <QTemporaryFile>

#include <array>
#include <cstdio>
#include <map>
#include <optional>
#include <stdexcept>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

// Qt lays out and writes the text with its fonts: the program's dialogs and documents show the same
// characters. Left to it, pictures would be decoded, compressed once more (100 ms each) and all be held, so
// they are put in afterwards by libqpdf, which copies their encoded bytes and builds what Qt 6.4 cannot:
// outline and tags.

namespace
{
RunTimeError notWritten(const QString &path, const QString &reason)
{
    return {RunTimeError::WordFileNotWritten, u"The PDF \"%1\" could not be made: %2"_s.arg(path, reason)};
}

/// Where libqpdf writes the document to, some of it in destructors: a failure is kept until it can be thrown.
class FilePipeline : public Pipeline
{
public:
    explicit FilePipeline(AtomicFile::Replacement &file) : Pipeline("document", nullptr), m_file(file)
    {
        m_buffer.reserve(pieceSize);
    }

    void write(const unsigned char *bytes, std::size_t size) override
    {
        const QByteArrayView added(bytes, static_cast<qsizetype>(size));
        if (m_buffer.size() + added.size() > pieceSize)
            flush(added);
        else
            m_buffer.append(added);
    }
    void finish() override { flush({}); }

    /// Throws what has made the file incomplete.
    void check() const
    {
        if (m_failure)
            throw RunTimeError(*m_failure);
    }

private:
    void flush(QByteArrayView added)
    {
        try {
            const std::array<QByteArrayView, 2> pieces{m_buffer, added};
            if (!m_failure)
                m_file.append(pieces);
        } catch (const RunTimeError &error) {
            m_failure = error;
        }
        m_buffer.resize(0);
    }

    static constexpr qsizetype pieceSize = 64 * 1024;
    AtomicFile::Replacement &m_file;
    QByteArray m_buffer;
    std::optional<RunTimeError> m_failure;
};

void writeTo(Pipeline &pipeline, QByteArrayView bytes)
{
    pipeline.write(reinterpret_cast<const unsigned char *>(bytes.data()),
                   static_cast<std::size_t>(bytes.size()));
}

QPDFObjectHandle parsed(const QString &text)
{
    return QPDFObjectHandle::parse(text.toStdString());
}

/// The pictures of a document as objects of a PDF; one that is shown several times is there once.
class PdfPictures
{
public:
    PdfPictures(QPDF &pdf, DocumentPictures &pictures, const FilePipeline &file, const DocumentWork &work)
        : m_pdf(pdf), m_pictures(pictures), m_file(file), m_work(work)
    {
    }

    QPDFObjectHandle use(const QString &path)
    {
        const auto [place, added] = m_objects.try_emplace(path);
        if (added)
            place->second.object = create(path);
        ++place->second.uses;
        return place->second.object;
    }

private:
    struct Object {
        QPDFObjectHandle object;
        int uses = 0;
        bool written = false;
    };

    QPDFObjectHandle create(const QString &path);
    void describePng(QPDFObjectHandle &dictionary, const PngShape &shape, QPDFObjectHandle &parameters);
    void provide(const QString &path, Pipeline &target);

    QPDF &m_pdf;
    DocumentPictures &m_pictures;
    const FilePipeline &m_file;
    const DocumentWork &m_work;
    std::map<QString, Object> m_objects;
    int m_written = 0;
};

QPDFObjectHandle PdfPictures::create(const QString &path)
{
    const EncodedPicture picture = m_pictures.describe(path);
    QPDFObjectHandle stream = QPDFObjectHandle::newStream(&m_pdf);
    QPDFObjectHandle dictionary = parsed(
        u"<< /Type /XObject /Subtype /Image /Width %1 /Height %2 /BitsPerComponent 8 /ColorSpace %3 >>"_s
            .arg(picture.pixels.width())
            .arg(picture.pixels.height())
            .arg(picture.components == 1 ? u"/DeviceGray"_s : u"/DeviceRGB"_s));
    QPDFObjectHandle filter = parsed(u"/DCTDecode"_s);
    QPDFObjectHandle parameters = QPDFObjectHandle::newNull();
    if (picture.format == EncodedPicture::Format::Png) {
        filter = parsed(u"/FlateDecode"_s);
        const QByteArray bytes = m_pictures.bytes(path);
        describePng(dictionary, PngShape::parse(bytes).value(), parameters);
    }
    stream.replaceDict(dictionary);
    stream.replaceStreamData([this, path](Pipeline *target) { provide(path, *target); }, filter, parameters);
    return stream;
}

void PdfPictures::describePng(QPDFObjectHandle &dictionary, const PngShape &shape,
                              QPDFObjectHandle &parameters)
{
    // The filters of PNG are among those that a PDF knows as predictors; 15 says that each row names its own.
    parameters = parsed(u"<< /Predictor 15 /Colors %1 /BitsPerComponent %2 /Columns %3 >>"_s
                            .arg(shape.colorType == PngShape::Rgb ? 3 : 1)
                            .arg(shape.bits)
                            .arg(shape.pixels.width()));
    dictionary.replaceKey("/BitsPerComponent", QPDFObjectHandle::newInteger(shape.bits));
    if (shape.colorType != PngShape::Palette)
        return;
    QPDFObjectHandle colors = parsed(u"[ /Indexed /DeviceRGB %1 ]"_s.arg(shape.palette.size() / 3 - 1));
    colors.appendItem(QPDFObjectHandle::newString(shape.palette.toByteArray().toStdString()));
    dictionary.replaceKey("/ColorSpace", colors);
}

void PdfPictures::provide(const QString &path, Pipeline &target)
{
    if (m_work.stop.stop_requested())
        throw RunTimeError(RunTimeError::UserInterrupt, u"The document was not finished."_s);
    m_file.check();
    const QByteArray bytes = m_pictures.bytes(path);
    if (const auto png = PngShape::parse(bytes)) {
        for (const QByteArrayView piece : png->data)
            writeTo(target, piece);
    } else {
        writeTo(target, bytes);
    }
    target.finish();
    Object &object = m_objects.at(path);
    if (!std::exchange(object.written, true)) {
        m_written += object.uses;
        if (m_work.progressed)
            m_work.progressed(m_written);
    }
}

QByteArray beginOfPart(const DocumentParagraph &paragraph, std::size_t index)
{
    return QByteArray(PdfStructure::kindOf(paragraph)) + " << /MCID " + QByteArray::number(index) +
           " >> BDC\n";
}

QByteArray pictureKey(std::size_t index)
{
    return "/Picture" + QByteArray::number(index);
}

/// The operators of a page, its parts marked, the pictures behind the text.
QByteArray markedContent(QByteArrayView laidOut, const PdfStructure::Page &page,
                         const DocumentContent &content)
{
    QByteArray text = "q\n"_ba;
    QByteArray pictures = "Q\n"_ba;
    const char *end = "";
    for (std::size_t i = 0; i < page.content.parts.size(); ++i) {
        const PdfPart &part = page.content.parts[i];
        const QByteArray begin = beginOfPart(content.paragraphs[part.paragraph], i);
        if (part.picture.isNull()) {
            const QByteArray place = beginningOfText(i);
            const qsizetype found = laidOut.indexOf(place);
            if (found < 0)
                throw std::runtime_error("a paragraph is missing in its page");
            text.append(laidOut.first(found)).append(end).append(begin);
            laidOut = laidOut.sliced(found + place.size());
            end = "EMC\n";
        } else {
            const auto fixed = [](double value) { return QByteArray::number(value, 'f', 2) + ' '; };
            const PdfStructure::Place place = PdfStructure::placeOn(page.object, part.picture);
            pictures += begin + "q " + fixed(place.width) + "0 0 " + fixed(place.height) + fixed(place.left) +
                        fixed(place.bottom) + "cm " + pictureKey(i) + " Do Q\nEMC\n";
        }
    }
    return text.append(laidOut).append(end).append(pictures);
}

/// Adds the pictures, and has the operators changed when they are written.
void finishPage(QPDF &pdf, const PdfStructure::Page &page, const DocumentContent &content,
                PdfPictures &pictures, PdfFonts &fonts)
{
    QPDFObjectHandle object = page.object;
    QPDFObjectHandle resources = QPDFPageObjectHelper(object).getAttribute("/Resources", true);
    fonts.mend(resources);
    // What Qt draws as a picture itself, such as a glyph in colours, is there already.
    if (!resources.getKey("/XObject").isDictionary())
        resources.replaceKey("/XObject", QPDFObjectHandle::newDictionary());
    QPDFObjectHandle objects = resources.getKey("/XObject");
    for (std::size_t i = 0; i < page.content.parts.size(); ++i) {
        const PdfPart &part = page.content.parts[i];
        if (!part.picture.isNull())
            objects.replaceKey(pictureKey(i).toStdString(),
                               pictures.use(content.paragraphs[part.paragraph].picture->path));
    }
    QPDFObjectHandle marked = QPDFObjectHandle::newStream(&pdf);
    QPDFObjectHandle laidOut = object.getKey("/Contents");
    const auto provide = [&page, &content, laidOut](Pipeline *target) mutable {
        const auto bytes = laidOut.getStreamData(qpdf_dl_generalized);
        const QByteArrayView view(bytes->getBuffer(), static_cast<qsizetype>(bytes->getSize()));
        writeTo(*target, markedContent(view, page, content));
        target->finish();
    };
    marked.replaceStreamData(provide, QPDFObjectHandle::newNull(), QPDFObjectHandle::newNull());
    object.replaceKey("/Contents", marked);
}

/// libqpdf reads the text of the pages from `laidOut` while it writes.
void finish(QTemporaryFile &laidOut, std::vector<PdfPage> pages, const DocumentContent &content,
            DocumentPictures &pictures, AtomicFile::Replacement &file, const DocumentWork &work)
{
    QPDF pdf;
    pdf.setSuppressWarnings(true);
    pdf.setAttemptRecovery(false);
    std::FILE *input = ::fdopen(::dup(laidOut.handle()), "rb");
    if (!input)
        QUtil::throw_system_error("temporary file");
    pdf.processFile("temporary file", input, true);

    FilePipeline pipeline(file);
    PdfPictures objects(pdf, pictures, pipeline, work);
    PdfFonts fonts;
    std::vector<PdfStructure::Page> finished;
    finished.reserve(pages.size());
    std::vector<QPDFPageObjectHelper> found = QPDFPageDocumentHelper(pdf).getAllPages();
    for (std::size_t i = 0; i < pages.size(); ++i) {
        finished.push_back({std::move(pages[i]), found.at(i).getObjectHandle()});
        finishPage(pdf, finished.back(), content, objects, fonts);
    }
    PdfStructure::addOutline(pdf, finished);
    PdfStructure::addTags(pdf, finished, content);
    PdfStructure::setProperties(pdf, content.title);

    QPDFWriter writer(pdf);
    writer.setOutputPipeline(&pipeline);
    writer.setCompressStreams(true);     // those that are not
    writer.setDecodeLevel(qpdf_dl_none); // all others stay as they are
    writer.setObjectStreamMode(qpdf_o_disable);
    writer.write();
    pipeline.finish();
    pipeline.check();
}
} // namespace

void writePdfDocument(const DocumentContent &content, DocumentPictures &pictures, const PageFormat &format,
                      const QString &path, const DocumentWork &work)
{
    AtomicFile::Replacement file(path);
    QTemporaryFile laidOut;
    if (!laidOut.open())
        throw notWritten(path, laidOut.errorString());
    std::vector<PdfPage> pages = layPdfOut(content, pictures, format, laidOut, work);
    if (!laidOut.flush() || laidOut.error() != QFileDevice::NoError)
        throw notWritten(path, laidOut.errorString());
    try {
        finish(laidOut, std::move(pages), content, pictures, file, work);
    } catch (const RunTimeError &) {
        throw;
    } catch (const std::exception &error) { // of libqpdf and the standard library
        throw notWritten(path, QString::fromUtf8(error.what()));
    }
    if (work.stop.stop_requested())
        throw RunTimeError(RunTimeError::UserInterrupt, u"The document was not finished."_s);
    file.takeTheName();
}
