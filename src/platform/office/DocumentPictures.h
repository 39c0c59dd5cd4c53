#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

#include <memory>

/// A picture in the form in which documents hold it: a whole PNG or JPEG file.
struct EncodedPicture {
    enum class Format { Png, Jpeg };
    Format format = Format::Png;
    QSize pixels;
    qint64 size = 0;      ///< of the encoded file, bytes
    int components = 3;   ///< of a JPEG: 1 grey, 3 colour; of a PNG: 1 grey, 3 colour, 1 with a palette
    bool palette = false; ///< a PNG of palette colours
    bool operator==(const EncodedPicture &) const = default;
};

/// The pictures of the documents that are being written, each encoded once, in other threads, and shared by
/// all documents. Lossless: a JPEG file of grey or three components stays the file it is, a PNG file too
/// where it is simple (at most 8 bits a component, no transparency, not interlaced), everything else becomes
/// a PNG of that simple kind; transparent parts show the white of the page, 16 bits become 8. Encoded
/// pictures wait in a temporary file, so that the memory does not grow with their number.
///
/// A file is known by its path; one that changes after its first request is not read again. May be used by
/// several threads at once.
class DocumentPictures
{
public:
    DocumentPictures();
    ~DocumentPictures(); ///< gives up what is not encoded yet
    DocumentPictures(const DocumentPictures &) = delete;
    DocumentPictures &operator=(const DocumentPictures &) = delete;

    /// Begins to encode the file. Never fails; what is wrong with it is thrown by the other two.
    void request(const QString &path);

    /// Both wait until the picture is encoded, requesting it if nobody has. Throw RunTimeError naming the
    /// file when it is missing, damaged, no picture, of more than a gigabyte of pixels that have to be
    /// written anew, or the temporary file cannot be written.
    EncodedPicture describe(const QString &path);
    QByteArray bytes(const QString &path);

private:
    class Work;
    std::unique_ptr<Work> m_work;
};
