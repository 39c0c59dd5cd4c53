#include "platform/office/WordBinary.h"

#include "platform/office/CompoundFile.h"
#include "platform/office/LittleEndianBytes.h"
#include "platform/office/WordBinaryPicture.h"
#include "platform/office/WordBinarySummary.h"
#include "platform/office/WordBinaryTables.h"
#include "platform/office/WordBinaryText.h"
#include "platform/RunTimeError.h"

#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace
{
void stopIfAsked(const DocumentWork &work, const QString &path)
{
    if (work.stop.stop_requested())
        throw RunTimeError(RunTimeError::UserInterrupt, u"Writing the file \"%1\" was stopped."_s.arg(path));
}

/// The pictures of a document and where they lie in its Data stream.
struct PlannedPictures {
    std::vector<WordBinaryPicture> pictures;
    std::vector<qint64> offsets;
    qint64 size = 0;

    PlannedPictures(const DocumentContent &content, DocumentPictures &source, const PageFormat &page,
                    const QString &path, const DocumentWork &work)
    {
        for (const DocumentParagraph &paragraph : content.paragraphs) {
            if (paragraph.picture)
                source.request(paragraph.picture->path);
        }
        for (const DocumentParagraph &paragraph : content.paragraphs) {
            if (!paragraph.picture)
                continue;
            stopIfAsked(work, path);
            const int number = static_cast<int>(pictures.size());
            pictures.emplace_back(*paragraph.picture, source.describe(paragraph.picture->path), page, number);
            offsets.push_back(size);
            size += pictures.back().size();
            if (work.progressed) // waiting for the encoded picture is what takes its time
                work.progressed(number + 1);
        }
    }
};
} // namespace

void writeWordDocument(const DocumentContent &content, DocumentPictures &pictures, const PageFormat &page,
                       const QString &path, const DocumentWork &work)
{
    stopIfAsked(work, path);
    const PlannedPictures planned(content, pictures, page, path, work);
    const QDateTime now = QDateTime::currentDateTime();
    const WordBinaryText text = WordBinaryText::of(content.paragraphs, planned.offsets);
    const WordBinaryTables tables = WordBinaryTables::of(text, page, !planned.pictures.empty(), now);
    const QByteArray summary = wordSummary(content.title, now);
    const QByteArray object = wordObjectDescription();

    std::vector<CompoundFile::Stream> streams = {
        {u"WordDocument"_s, text.end() + tables.behindText.size()},
        {u"1Table"_s, tables.table.size()},
        {u"\u0005SummaryInformation"_s, summary.size()},
        {u"\u0001CompObj"_s, object.size()},
    };
    if (!planned.pictures.empty())
        streams.push_back({u"Data"_s, planned.size});
    CompoundFile file(path, wordClassId(), std::move(streams));
    file.append(tables.beforeText);
    file.append(LittleEndianBytes::utf16(text.characters));
    for (const QByteArray &bytes : {tables.behindText, tables.table, summary, object})
        file.append(bytes);

    for (const WordBinaryPicture &picture : planned.pictures) {
        stopIfAsked(work, path);
        const QByteArray bytes = pictures.bytes(picture.path());
        file.append(picture.description(bytes));
        file.append(bytes);
    }
    file.finish();
}
