#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>

/// A file of one record per line that survives the death of its writer: each record is there as a whole, in
/// the hands of the kernel, when append() returns. The file is locked while its writer lives, so that another
/// process, or a later one, can tell a journal that is being written from one whose writer has gone.
class JournalFile
{
public:
    /// Creates the file; throws RunTimeError when it exists or cannot be written.
    static std::unique_ptr<JournalFile> create(const QString &path);

    /// Opens and locks a file whose writer has gone; null while another holds it, or when it cannot be
    /// opened.
    static std::unique_ptr<JournalFile> takeOver(const QString &path);

    ~JournalFile();
    JournalFile(const JournalFile &) = delete;
    JournalFile &operator=(const JournalFile &) = delete;

    /// Adds a record; it must hold no line feed. Throws RunTimeError when it cannot be written; the file is
    /// as it was before then.
    void append(const QByteArray &record);

    /// All whole records. One that was cut off while it was written is left out.
    QList<QByteArray> records() const;

    /// Takes the file away; it must not be used any more.
    void remove() noexcept;

    const QString &path() const noexcept { return m_path; }

private:
    JournalFile(QString path, int descriptor);

    QString m_path;
    int m_descriptor;
};
