#pragma once

#include "platform/AtomicFile.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

/// Writes a compound file of version 3 with sectors of 512 bytes, after [MS-CFB]: one storage that holds
/// streams. The sizes of the streams are known beforehand, so that the file is written front to back and
/// nothing of a large stream is kept.
///
/// Streams lie in the file in the order in which they were named, those below 4096 bytes behind them in the
/// mini stream. Until finish() an existing file stays as it is; destroyed before, nothing is left behind.
class CompoundFile
{
public:
    struct Stream {
        QString name; ///< at most 31 characters, of those that are their own upper case or ASCII
        qint64 size = 0;
    };

    /// `classId` are the 16 bytes that say whose file it is. Throws RunTimeError when the file would be
    /// larger than the format allows, before anything is written, and when it cannot be written.
    CompoundFile(const QString &path, const QByteArray &classId, std::vector<Stream> streams);

    /// The next bytes of the streams, one stream after the other; a piece belongs to one stream.
    void append(QByteArrayView bytes);

    /// Gives the file its name once all streams have their bytes.
    void finish();

private:
    /// Sectors that follow each other.
    struct Chain {
        qint64 first = 0;
        qint64 sectors = 0;
    };

    void layOut();
    void checkSize(const QString &path) const;
    void goToNextStream();
    bool inMiniStream(const Stream &stream) const;
    QByteArray header() const;
    QByteArray directory() const;
    QByteArray miniAllocation() const;
    QByteArray allocation() const;
    QByteArray furtherAllocationSectors() const;

    QByteArray m_classId;
    std::vector<Stream> m_streams;
    std::vector<Chain> m_chains; ///< of the streams, in their order; of the mini stream in its own sectors
    Chain m_miniStream;
    Chain m_miniAllocation;
    Chain m_directory;
    Chain m_allocation;
    Chain m_further; ///< lists the allocation sectors that have no place in the header

    std::optional<AtomicFile::Replacement> m_file;
    std::size_t m_current = 0; ///< the stream that is being written
    qint64 m_left = 0;         ///< bytes that it still expects
    QByteArray m_mini;
};
