#pragma once

#include "platform/office/DocumentContent.h"
#include "platform/office/DocumentPictures.h"

/// A picture in the Data stream of a Word document: a description, then the bytes of its file.
class WordBinaryPicture
{
public:
    /// `number` counts the pictures of the document from 0.
    WordBinaryPicture(const DocumentPicture &picture, const EncodedPicture &encoded, const PageFormat &page,
                      int number);

    const QString &path() const { return m_path; }
    qint64 size() const; ///< of both, bytes

    /// What comes before the bytes of the file.
    QByteArray description(QByteArrayView file) const;

private:
    QByteArray describe(const QByteArray &digest) const;
    QByteArray shape() const;
    QByteArray blipStart(const QByteArray &digest) const;

    QString m_path;
    QString m_alternativeText;
    EncodedPicture m_encoded;
    QSize m_size; ///< twips
    int m_number;
};
