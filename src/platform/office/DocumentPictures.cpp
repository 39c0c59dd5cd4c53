#include "platform/office/DocumentPictures.h"

#include "platform/ImageFile.h"
#include "platform/InputFile.h"
#include "platform/linux/SystemError.h"
#include "platform/office/PictureShapes.h"
#include "platform/office/PngEncoder.h"

#include <QDir>
#include <QTemporaryFile>

#include <algorithm>
#include <array>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <unordered_map>
#include <vector>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace
{
struct Encoded {
    EncodedPicture picture;
    QByteArray bytes;
};

EncodedPicture describePng(const PngShape &shape, qint64 size)
{
    return {EncodedPicture::Format::Png, shape.pixels, size, shape.colorType == PngShape::Rgb ? 3 : 1,
            shape.colorType == PngShape::Palette};
}

RunTimeError noPicture(const QString &path, const QString &reason)
{
    return {RunTimeError::InvalidPicture, u"%1 is not a picture: %2"_s.arg(path, reason)};
}

/// The file as it is, where documents can take it over; nothing where its pixels have to be written anew.
std::optional<Encoded> takenOver(const QString &path)
{
    InputFile file(path);
    constexpr std::size_t signature = 8; // bytes tell what the file is
    std::array<char, signature> beginning{};
    const QByteArrayView read(beginning.data(), file.read(beginning.data(), beginning.size()));
    const bool png = PngShape::isPng(read);
    if (!png && !JpegShape::isJpeg(read))
        return std::nullopt;
    Encoded result{{}, file.readAll()};
    const qint64 size = result.bytes.size();
    if (png) {
        const auto shape = PngShape::parse(result.bytes);
        if (!shape)
            throw noPicture(path, u"the PNG file is damaged or not whole"_s);
        result.picture = describePng(*shape, size);
        return shape->simple ? std::optional(std::move(result)) : std::nullopt;
    }
    const auto shape = JpegShape::parse(result.bytes);
    if (!shape)
        throw noPicture(path, u"the JPEG file is damaged or not whole"_s);
    result.picture = {EncodedPicture::Format::Jpeg, shape->pixels, size, shape->components, false};
    return shape->simple ? std::optional(std::move(result)) : std::nullopt;
}

/// Nothing when `stop` is requested meanwhile.
std::optional<Encoded> encoded(const QString &path, const std::stop_token &stop)
{
    if (auto asItIs = takenOver(path))
        return asItIs;
    QImage picture = ImageFile::load(path);
    if (stop.stop_requested())
        return std::nullopt;
    Encoded result{{}, encodePng(std::move(picture))};
    result.picture = describePng(PngShape::parse(result.bytes).value(), result.bytes.size());
    return result;
}

QString temporaryFileText()
{
    return u"Cannot keep pictures in a temporary file in \"%1\""_s.arg(QDir::tempPath());
}

/// The code comes as a value: to find out where temporary files lie changes errno.
RunTimeError temporaryFileFailed(int code)
{
    return systemError(code, temporaryFileText());
}
} // namespace

class DocumentPictures::Work
{
public:
    Work() { m_spoolFile = m_spool.open() ? m_spool.handle() : -1; }
    ~Work();

    struct Entry {
        bool finished = false;
        EncodedPicture picture;
        qint64 offset = 0; ///< in the temporary file
        std::optional<RunTimeError> error;
    };

    void request(const QString &path);
    /// Does not change any more. Throws the picture's error.
    const Entry &finished(const QString &path);
    QByteArray read(const Entry &entry) const;

private:
    Entry &enqueue(const QString &path);
    void serve(const std::stop_token &stop);
    /// Nothing when `stop` is requested meanwhile.
    std::optional<Entry> encodeAndStore(const QString &path, const std::stop_token &stop);
    qint64 store(const QByteArray &bytes);

    QTemporaryFile m_spool; ///< without a name
    int m_spoolFile = -1;   ///< its descriptor; negative when there is none

    std::mutex m_mutex; ///< for all that follows
    std::condition_variable_any m_requested;
    std::condition_variable m_finished;
    std::unordered_map<QString, Entry> m_entries; ///< none is ever removed
    std::deque<QString> m_queue;
    qint64 m_spoolEnd = 0;
    std::vector<std::jthread> m_workers; ///< last: they use all the others until they have ended
};

DocumentPictures::Work::~Work()
{
    for (std::jthread &worker : m_workers)
        worker.request_stop();
}

void DocumentPictures::Work::request(const QString &path)
{
    const std::lock_guard lock(m_mutex);
    enqueue(path);
}

DocumentPictures::Work::Entry &DocumentPictures::Work::enqueue(const QString &path)
{
    const auto [place, added] = m_entries.try_emplace(path);
    if (added) {
        m_queue.push_back(path);
        if (m_workers.size() < std::max(1U, std::thread::hardware_concurrency()))
            m_workers.emplace_back([this](const std::stop_token &stop) { serve(stop); });
        m_requested.notify_one();
    }
    return place->second;
}

const DocumentPictures::Work::Entry &DocumentPictures::Work::finished(const QString &path)
{
    std::unique_lock lock(m_mutex);
    const Entry &entry = enqueue(path);
    // Somebody waits for it: those that are only expected can wait.
    if (const auto queued = std::find(m_queue.begin(), m_queue.end(), path);
        queued != m_queue.end() && queued != m_queue.begin()) {
        m_queue.erase(queued);
        m_queue.push_front(path);
    }
    m_finished.wait(lock, [&] { return entry.finished; });
    if (entry.error)
        throw RunTimeError(*entry.error);
    return entry;
}

void DocumentPictures::Work::serve(const std::stop_token &stop)
{
    std::unique_lock lock(m_mutex);
    while (m_requested.wait(lock, stop, [this] { return !m_queue.empty(); }) && !stop.stop_requested()) {
        const QString path = m_queue.front();
        m_queue.pop_front();
        lock.unlock();
        std::optional<Entry> entry = encodeAndStore(path, stop);
        lock.lock();
        if (!entry)
            return;
        m_entries[path] = std::move(*entry);
        m_finished.notify_all();
    }
}

std::optional<DocumentPictures::Work::Entry>
DocumentPictures::Work::encodeAndStore(const QString &path, const std::stop_token &stop)
{
    Entry entry;
    entry.finished = true;
    try {
        const std::optional<Encoded> result = encoded(path, stop);
        if (!result)
            return std::nullopt;
        entry.picture = result->picture;
        entry.offset = store(result->bytes);
    } catch (const RunTimeError &error) {
        entry.error = error;
    } catch (const std::bad_alloc &) {
        entry.error = noPicture(path, u"there is not enough memory for it"_s);
    }
    return entry;
}

qint64 DocumentPictures::Work::store(const QByteArray &bytes)
{
    if (m_spoolFile < 0)
        throw RunTimeError(RunTimeError::PathAccess, temporaryFileText() + u": "_s + m_spool.errorString());
    qint64 begin = 0;
    {
        const std::lock_guard lock(m_mutex);
        begin = m_spoolEnd;
        m_spoolEnd += bytes.size();
    }
    for (qint64 done = 0; done < bytes.size();) {
        const ssize_t written = ::pwrite(m_spoolFile, bytes.constData() + done,
                                         static_cast<std::size_t>(bytes.size() - done), begin + done);
        if (written < 0 && errno != EINTR)
            throw temporaryFileFailed(errno);
        done += std::max<ssize_t>(written, 0);
    }
    return begin;
}

QByteArray DocumentPictures::Work::read(const Entry &entry) const
{
    QByteArray bytes(entry.picture.size, Qt::Uninitialized);
    for (qint64 done = 0; done < bytes.size();) {
        const ssize_t count = ::pread(m_spoolFile, bytes.data() + done,
                                      static_cast<std::size_t>(bytes.size() - done), entry.offset + done);
        if (count == 0 || (count < 0 && errno != EINTR))
            throw temporaryFileFailed(count == 0 ? EIO : errno);
        done += std::max<ssize_t>(count, 0);
    }
    return bytes;
}

DocumentPictures::DocumentPictures() : m_work(std::make_unique<Work>()) {}

DocumentPictures::~DocumentPictures() = default;

void DocumentPictures::request(const QString &path)
{
    m_work->request(path);
}

EncodedPicture DocumentPictures::describe(const QString &path)
{
    return m_work->finished(path).picture;
}

QByteArray DocumentPictures::bytes(const QString &path)
{
    return m_work->read(m_work->finished(path));
}
