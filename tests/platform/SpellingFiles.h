#pragma once

#include "platform/linux/HunspellDictionary.h"

#include <QTemporaryDir>

#include "FileChecks.h"

/// A folder with dictionaries of a few words and the file of the user's words.
class SpellingFiles
{
public:
    HunspellDictionary::Places places(const QString &name) const
    {
        return {{m_folder.path()}, {name}, wordsFile()};
    }
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QString wordsFile() const { return path(QStringLiteral("user/shotly/words.txt")); }

    void write(const QString &name, const QByteArray &affixes, const QByteArray &words) const
    {
        putFile(path(name + QStringLiteral(".aff")), affixes);
        QByteArray lines = QByteArray::number(words.count(' ') + 1) + ' ' + words + ' ';
        putFile(path(name + QStringLiteral(".dic")), lines.replace(' ', '\n'));
    }

    void writeEnglish() const
    {
        write(QStringLiteral("en_US"), "SET UTF-8\nTRY esianrtolcdugmphbyfvkwz'\n",
              "the cat and dog sat don't on a mat house houses");
    }

private:
    QTemporaryDir m_folder;
};
