#include "documents/OutputFile.h"

using namespace Qt::Literals::StringLiterals;

std::optional<QString> ChooseOutputFile(const FileSystem &files, Prompter &prompter, const QString &directory,
                                        const QString &fileName, const QString &what)
{
    QString path = FileSystem::join(directory, fileName);
    while (files.fileExists(path)) {
        const Answer answer =
            prompter.ask(Question::OverwriteContentsPage, Buttons::YesNo,
                         {u"File: %1\r\nalready exists. Overwrite it?"_s.arg(path), u"File Existing"_s});
        if (answer == Answer::Yes)
            return path;
        const std::optional<QString> name =
            prompter.input(Question::NewContentsPageName,
                           {u"Please enter a new file name for %1\r\n"
                            "If you do not want to overwrite this file in this\r\n"
                            "directory, provide a name that has not been \r\n"
                            "used in this directory:%2\r\n"
                            "The file name was %3"_s.arg(what, directory, fileName),
                            u"Enter File Name"_s},
                           QString());
        if (!name || name->trimmed().isEmpty())
            return std::nullopt;
        path = FileSystem::join(directory, *name);
    }
    return path;
}
