#include "platform/linux/HunspellDictionary.h"

#include "platform/AtomicFile.h"
#include "platform/RunTimeError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>

#include <hunspell/hunspell.hxx>
#include <iconv.h>

#include <array>
#include <optional>
#include <string>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr QChar typographicApostrophe(u'\u2019');
constexpr auto utf16 = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? "UTF-16LE" : "UTF-16BE";

/// Dictionaries name some encodings otherwise than this system does.
std::string systemName(std::string encoding)
{
    if (encoding.starts_with("microsoft-cp"))
        return "CP" + encoding.substr(12);
    if (encoding == "TIS620-2533")
        return "TIS-620";
    return encoding;
}

/// One direction between two encodings.
class Converter
{
public:
    Converter(const std::string &to, const std::string &from) : m_handle(iconv_open(to.c_str(), from.c_str()))
    {
    }
    ~Converter()
    {
        if (valid())
            iconv_close(m_handle);
    }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;

    bool valid() const { return m_handle != invalid; }

    /// Nothing when a character has no place in the other encoding.
    std::optional<std::string> convert(const char *bytes, std::size_t count)
    {
        if (!valid())
            return std::nullopt;
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        std::string result(count * 4, '\0'); // no character grows more
        char *from = const_cast<char *>(bytes);
        char *to = result.data();
        std::size_t room = result.size();
        // A positive answer counts characters that were replaced by similar ones.
        if (iconv(m_handle, &from, &count, &to, &room) != 0 || count != 0)
            return std::nullopt;
        result.resize(result.size() - room);
        return result;
    }

private:
    static inline const auto invalid = reinterpret_cast<iconv_t>(-1);
    iconv_t m_handle;
};

/// What of a word the dictionary is asked for.
QString prepared(const QString &word)
{
    QString result = word.normalized(QString::NormalizationForm_C);
    return result.remove(u'\u00ad').replace(typographicApostrophe, u'\'');
}

QString languageOf(const QString &name)
{
    return name.section(u'_', 0, 0);
}

bool isDictionary(const QFileInfo &words)
{
    return words.isReadable() &&
           QFileInfo(words.path() + u'/' + words.completeBaseName() + u".aff"_s).isReadable();
}
} // namespace

/// The library, spoken to in the encoding of its dictionary.
class HunspellEngine
{
public:
    explicit HunspellEngine(const QString &path)
        : m_hunspell(QFile::encodeName(path + u".aff"_s).constData(),
                     QFile::encodeName(path + u".dic"_s).constData()),
          m_encoding(usableEncoding(m_hunspell.get_dict_encoding())), m_encoder(m_encoding, utf16),
          m_decoder(utf16, m_encoding)
    {
    }

    bool knows(const QString &word)
    {
        const auto bytes = encode(word);
        return bytes && m_hunspell.spell(*bytes);
    }

    QStringList suggest(const QString &word)
    {
        QStringList result;
        if (const auto bytes = encode(word)) {
            for (const std::string &each : m_hunspell.suggest(*bytes)) {
                if (const auto text = m_decoder.convert(each.data(), each.size()))
                    result += QString(reinterpret_cast<const QChar *>(text->data()),
                                      static_cast<qsizetype>(text->size() / sizeof(QChar)));
            }
        }
        return result;
    }

    void add(const QString &word)
    {
        if (const auto bytes = encode(word))
            m_hunspell.add(*bytes);
    }

private:
    /// The library itself falls back to this one.
    static std::string usableEncoding(const std::string &encoding)
    {
        const std::string name = systemName(encoding);
        return Converter(utf16, name).valid() ? name : "ISO8859-1";
    }

    std::optional<std::string> encode(const QString &word)
    {
        return m_encoder.convert(reinterpret_cast<const char *>(word.utf16()),
                                 static_cast<std::size_t>(word.size()) * sizeof(QChar));
    }

    Hunspell m_hunspell;
    std::string m_encoding;
    Converter m_encoder;
    Converter m_decoder;
};

HunspellDictionary::Places HunspellDictionary::Places::ofThisMachine()
{
    Places places;
    places.folders = QStringList{u"/usr/share/hunspell"_s, u"/usr/share/myspell/dicts"_s};
    if (const QString folder = qEnvironmentVariable("SHOTLY_DICTIONARY_DIR"); !folder.isEmpty())
        places.folders = QStringList{folder};
    places.languages = QLocale::system().uiLanguages();
    places.wordsFile =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/shotly/words.txt"_s;
    return places;
}

HunspellDictionary::HunspellDictionary(Places places) : m_places(std::move(places)) {}

HunspellDictionary::~HunspellDictionary() = default;

QString HunspellDictionary::find(const QStringList &folders, const QStringList &languages)
{
    QStringList found;
    for (const QString &folder : folders) {
        for (const QFileInfo &file : QDir(folder).entryInfoList({u"*.dic"_s}, QDir::Files, QDir::Name)) {
            if (isDictionary(file))
                found += file.path() + u'/' + file.completeBaseName();
        }
    }
    const auto firstWith = [&found](auto test) {
        for (const QString &path : std::as_const(found)) {
            if (test(path.sliced(path.lastIndexOf(u'/') + 1)))
                return path;
        }
        return QString();
    };
    for (QString language : languages + QStringList{u"en_US"_s}) {
        language.replace(u'-', u'_');
        QString path = firstWith([&](const QString &name) { return name == language; });
        if (path.isEmpty())
            path = firstWith([&](const QString &name) { return languageOf(name) == languageOf(language); });
        if (!path.isEmpty())
            return path;
    }
    return found.value(0);
}

bool HunspellDictionary::installed() const
{
    return m_engine || !find(m_places.folders, m_places.languages).isEmpty();
}

bool HunspellDictionary::isCorrect(const QString &word)
{
    HunspellEngine *const library = engine();
    const QString plain = prepared(word);
    // Few dictionaries know words with the typographic apostrophe alone.
    return !library || m_added.contains(plain) || library->knows(plain) ||
           (plain != word && library->knows(word));
}

QStringList HunspellDictionary::suggestions(const QString &word)
{
    HunspellEngine *const library = engine();
    if (!library)
        return {};
    QStringList result = library->suggest(prepared(word));
    if (word.contains(typographicApostrophe))
        result.replaceInStrings(u"'"_s, typographicApostrophe);
    return result;
}

void HunspellDictionary::add(const QString &word)
{
    const QString plain = prepared(word);
    // Read anew, so that the words of another running program stay, and as bytes, so that everything else
    // does.
    QFile file(m_places.wordsFile);
    QByteArray before;
    if (file.exists()) {
        if (!file.open(QIODevice::ReadOnly))
            throw RunTimeError(RunTimeError::PathAccess, u"Cannot read the file \"%1\": %2"_s.arg(
                                                             m_places.wordsFile, file.errorString()));
        before = file.readAll();
    }
    const QByteArray lineEnd = before.isEmpty() || before.endsWith('\n') ? QByteArray() : "\n"_ba;
    const QByteArray line = lineEnd + plain.toUtf8() + '\n';
    QDir().mkpath(QFileInfo(m_places.wordsFile).path());
    const std::array<QByteArrayView, 2> pieces{before, line};
    AtomicFile::write(m_places.wordsFile, pieces);
    accept(plain);
}

HunspellEngine *HunspellDictionary::engine()
{
    if (m_engine)
        return m_engine.get();
    const QString path = find(m_places.folders, m_places.languages);
    if (path.isEmpty())
        return nullptr;
    m_engine = std::make_unique<HunspellEngine>(path);
    QFile file(m_places.wordsFile);
    if (file.open(QIODevice::ReadOnly)) {
        QString text = QString::fromUtf8(file.readAll());
        if (text.startsWith(QChar::ByteOrderMark))
            text.remove(0, 1);
        for (const QString &line : text.split(u'\n', Qt::SkipEmptyParts))
            accept(prepared(line.trimmed()));
    }
    return m_engine.get();
}

void HunspellDictionary::accept(const QString &word)
{
    if (word.isEmpty())
        return;
    m_added.insert(word); // the library takes no word that its encoding lacks
    if (m_engine)
        m_engine->add(word);
}
