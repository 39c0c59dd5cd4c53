#include "platform/qt/WidgetPrompter.h"

#include "platform/qt/QtPrintJob.h"

#include <QApplication>
#include <QColorDialog>
#include <QDir>
#include <QFileDialog>
#include <QFontDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPushButton>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace
{
/// The window a box belongs to, if the user can see one.
QWidget *visibleParent()
{
    QWidget *window = QApplication::activeModalWidget();
    if (!window)
        window = QApplication::activeWindow();
    if (window && window->isVisible() && !window->isMinimized())
        return window;
    return nullptr;
}

void standAlone(QDialog &box)
{
    if (!box.parentWidget())
        box.setWindowFlag(Qt::WindowStaysOnTopHint);
}

QString lines(const QString &text)
{
    QString shown = text;
    return shown.replace("\r\n"_L1, "\n"_L1);
}

QMessageBox::Icon boxIcon(Icon icon)
{
    switch (icon) {
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::Critical:
        return QMessageBox::Critical;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

/// Questions whose Yes throws something away: Return alone must not choose it.
bool defaultIsNo(Question which)
{
    return which == Question::OverwriteContentsPage || which == Question::OverwriteHtmlFile ||
           which == Question::ReplaceImageFile || which == Question::DeleteImage ||
           which == Question::PaintReplaceFile || which == Question::DeleteProject ||
           which == Question::DeleteAllProjects || which == Question::ResetOptions ||
           which == Question::RestartComputer;
}

/// Questions of which no answer is harmless: Escape and closing the box answer nothing.
bool mustBeAnswered(Question which)
{
    return which == Question::SaveImageChangesOnClose; // No loses the drawings
}

void prepare(QMessageBox &box, const PromptText &prompt)
{
    box.setIcon(boxIcon(prompt.icon));
    box.setTextFormat(Qt::PlainText);
    box.setText(lines(prompt.text));
    box.setWindowTitle(prompt.title);
    standAlone(box);
}

/// Of the first pattern of "Bitmap (*.bmp *.dib)": what a name gets that is typed without one.
QString firstSuffix(const QString &nameFilter)
{
    static const QRegularExpression first(u"\\(\\*\\.(\\w+)"_s);
    return first.match(nameFilter).captured(1).toLower();
}

/// A name that is typed without a suffix gets that of the kind that is chosen; one that has the suffix of
/// another kind is changed by the dialog itself.
void followKind(QFileDialog &dialog)
{
    const auto follow = [&dialog](const QString &kind) { dialog.setDefaultSuffix(firstSuffix(kind)); };
    follow(dialog.selectedNameFilter());
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, follow);
}

std::optional<QString> chooseFile(const FilePrompt &prompt, QFileDialog::AcceptMode mode)
{
    QFileDialog dialog(visibleParent(), prompt.title, prompt.directory);
    standAlone(dialog);
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setAcceptMode(mode);
    dialog.setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    dialog.setNameFilters(WidgetPrompter::nameFilters(prompt.filter));
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !prompt.askOverwrite);
    if (mode == QFileDialog::AcceptSave)
        followKind(dialog);
    if (!prompt.fileName.isEmpty())
        dialog.selectFile(prompt.fileName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dialog.selectedFiles().constFirst();
}
} // namespace

QStringList WidgetPrompter::nameFilters(const QString &filter)
{
    static const QRegularExpression shownPatterns(u"\\s*\\([^)]*\\)\\s*$"_s);
    const QStringList parts = filter.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString label = parts[i].trimmed();
        label.remove(shownPatterns);
        filters += label + u" ("_s + parts[i + 1].trimmed().split(u';').join(u' ') + u')';
    }
    return filters;
}

void WidgetPrompter::tell(Question, const PromptText &prompt)
{
    QMessageBox box(visibleParent());
    prepare(box, prompt);
    box.setStandardButtons(QMessageBox::Ok);
    box.exec();
}

Answer WidgetPrompter::ask(Question which, Buttons buttons, const PromptText &prompt)
{
    QMessageBox box(visibleParent());
    prepare(box, prompt);
    const bool withCancel = buttons == Buttons::YesNoCancel;
    if (mustBeAnswered(which)) {
        box.setDefaultButton(box.addButton(QMessageBox::Yes));
        const QAbstractButton *no =
            box.addButton(u"&No"_s, QMessageBox::DestructiveRole); // Escape presses none of that role
        box.exec();
        return box.clickedButton() == no ? Answer::No : Answer::Yes;
    }
    box.setStandardButtons(withCancel ? QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel
                                      : QMessageBox::Yes | QMessageBox::No);
    box.setEscapeButton(withCancel ? QMessageBox::Cancel : QMessageBox::No);
    box.setDefaultButton(defaultIsNo(which) ? QMessageBox::No : QMessageBox::Yes);
    switch (box.exec()) {
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    default:
        return withCancel ? Answer::Cancel : Answer::No;
    }
}

std::optional<QString> WidgetPrompter::input(Question, const PromptText &prompt, const QString &proposal)
{
    QInputDialog dialog(visibleParent());
    standAlone(dialog);
    dialog.setWindowTitle(prompt.title);
    dialog.setLabelText(lines(prompt.text));
    dialog.setTextValue(proposal);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.textValue();
}

std::optional<QString> WidgetPrompter::openFile(Question, const FilePrompt &prompt)
{
    return chooseFile(prompt, QFileDialog::AcceptOpen);
}

std::optional<QString> WidgetPrompter::saveFile(Question, const FilePrompt &prompt)
{
    return chooseFile(prompt, QFileDialog::AcceptSave);
}

std::optional<QString> WidgetPrompter::pickFolder(Question, const QString &title, const QString &start)
{
    QFileDialog dialog(visibleParent(), title, start.isEmpty() ? QDir::homePath() : start);
    standAlone(dialog);
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dialog.selectedFiles().constFirst();
}

std::unique_ptr<PrintJob> WidgetPrompter::choosePrinter(Question)
{
    auto job = std::make_unique<QtPrintJob>();
    QPrintDialog dialog(&job->printer(), visibleParent());
    standAlone(dialog);
    dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize);
    if (dialog.exec() != QDialog::Accepted)
        return nullptr;
    job->begin();
    return job;
}

std::optional<QColor> WidgetPrompter::chooseColour(Question, QColor present)
{
    QColorDialog dialog(present, visibleParent());
    standAlone(dialog);
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.currentColor();
}

std::optional<QFont> WidgetPrompter::chooseFont(Question, const QFont &present)
{
    QFontDialog dialog(present, visibleParent());
    standAlone(dialog);
    dialog.setOption(QFontDialog::DontUseNativeDialog);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.currentFont();
}
