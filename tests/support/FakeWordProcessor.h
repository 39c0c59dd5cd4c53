#pragma once

#include "platform/RunTimeError.h"
#include "platform/WordProcessor.h"

#include <QFile>

#include <list>
#include <optional>

/// A word processor that writes down, one line each, what it is told, and files that say what they are.
class FakeWordProcessor : public WordProcessor
{
public:
    QStringList log;
    bool installed = true;
    bool converts = true;
    QStringList printerNames{QStringLiteral("Office Printer"), pdfPrinter()};
    std::optional<RunTimeError> failsToSave;
    std::optional<RunTimeError> failsToConvert;
    std::optional<RunTimeError> failsToOpen;
    std::function<void()> whileSaving;

    bool wordProcessorInstalled() const override { return installed; }
    bool canConvertFiles() const override { return converts; }
    QStringList printers() const override { return printerNames; }
    std::unique_ptr<WordApplication> createApplication() override
    {
        if (!installed)
            throw RunTimeError(RunTimeError::CannotCreateObject, QStringLiteral("none"));
        return std::make_unique<Application>(*this);
    }

private:
    static void write(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            throw RunTimeError(RunTimeError::PathAccess, path);
    }

    class Range : public WordRange
    {
    public:
        explicit Range(QStringList &log) : m_log(log) {}
        void insertBefore(const QString &text) override { say(QStringLiteral("text"), shown(text)); }
        void setFontName(const QString &name) override { say(QStringLiteral("font"), name); }
        void setFontSize(int points) override { say(QStringLiteral("size"), points); }
        void setFontColorIndex(int index) override { say(QStringLiteral("color"), index); }
        void setFontBold(bool on) override { say(QStringLiteral("bold"), on); }
        void setFontItalic(bool on) override { say(QStringLiteral("italic"), on); }
        void setUnderline(bool on) override { say(QStringLiteral("underline"), on); }
        void setAlignment(int alignment) override { say(QStringLiteral("align"), alignment); }
        void setOutlineLevel(int level) override { say(QStringLiteral("level"), level); }
        void select() override { m_log += QStringLiteral("select"); }

        static QString shown(QString text)
        {
            return text.replace(QStringLiteral("\r\n"), QStringLiteral("|"));
        }

    private:
        void say(const QString &what, const QString &value) { m_log += what + u' ' + value; }
        void say(const QString &what, int value) { say(what, QString::number(value)); }
        QStringList &m_log;
    };

    class Document : public WordDocument
    {
    public:
        Document(FakeWordProcessor &word, const QString &name) : m_word(word), m_name(name) {}
        std::unique_ptr<WordRange> addParagraph() override
        {
            m_word.log += QStringLiteral("paragraph");
            return std::make_unique<Range>(m_word.log);
        }
        void addPicture(const QString &path, const QString &text, WordRange &) override
        {
            m_word.log += QStringLiteral("picture %1 (%2)").arg(path.section(u'/', -1), text);
        }
        void saveAs(const QString &path, const DocumentWork &work) override
        {
            m_word.log += QStringLiteral("save ") + path.section(u'/', -1);
            if (m_word.whileSaving)
                m_word.whileSaving();
            if (work.stop.stop_requested())
                throw RunTimeError(RunTimeError::UserInterrupt, QStringLiteral("stopped"));
            if (work.progressed)
                work.progressed(1);
            if (m_word.failsToSave)
                throw RunTimeError(*m_word.failsToSave);
            write(path, "new document");
            m_name = path;
        }
        QString fullName() const override { return m_name; }

    private:
        FakeWordProcessor &m_word;
        QString m_name;
    };

    class Application : public WordApplication
    {
    public:
        explicit Application(FakeWordProcessor &word) : m_word(word) {}
        void setWindowState(int state) override { say(QStringLiteral("state"), state); }
        void setHeight(int points) override { say(QStringLiteral("height"), points); }
        void setWidth(int points) override { say(QStringLiteral("width"), points); }
        void setVisible(bool visible) override { say(QStringLiteral("visible"), visible); }
        WordDocument &addDocument(const QString &templatePath) override
        {
            m_word.log += QStringLiteral("new ") + templatePath.section(u'/', -1);
            return m_documents.emplace_back(m_word, QStringLiteral("Document"));
        }
        WordDocument &openDocument(const QString &path) override
        {
            m_word.log += QStringLiteral("open ") + path.section(u'/', -1);
            if (m_word.failsToOpen)
                throw RunTimeError(*m_word.failsToOpen);
            return m_documents.emplace_back(m_word, path);
        }
        int documents() const override { return static_cast<int>(m_documents.size()); }
        void insertBreak(int kind) override { say(QStringLiteral("break"), kind); }
        void insertAfter(const QString &text) override
        {
            m_word.log += QStringLiteral("after ") + Range::shown(text);
        }
        QString activePrinter() const override { return m_printer; }
        void setActivePrinter(const QString &printer) override
        {
            m_printer = printer;
            m_word.log += QStringLiteral("printer ") + printer;
        }
        void run(const QString &macro, const DocumentWork &work) override
        {
            m_word.log += QStringLiteral("run ") + macro;
            if (work.stop.stop_requested())
                throw RunTimeError(RunTimeError::UserInterrupt, QStringLiteral("stopped"));
            if (m_word.failsToConvert)
                throw RunTimeError(*m_word.failsToConvert);
            write(pdfPathOf(m_documents.back().fullName()), "new pdf");
        }
        void expectPictures(const QStringList &) override {}
        void show() override { m_word.log += QStringLiteral("show"); }

    private:
        void say(const QString &what, int value) { m_word.log += what + u' ' + QString::number(value); }
        FakeWordProcessor &m_word;
        std::list<Document> m_documents;
        QString m_printer = QStringLiteral("Office Printer");
    };
};
