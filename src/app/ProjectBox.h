#pragma once

#include <QComboBox>

/// The project box: an editable list of project names. Lets only letters, digits, "-" and "_" through; what
/// else is typed or pasted is kept out and reported. Return moves the focus on.
class ProjectBox : public QComboBox
{
    Q_OBJECT

public:
    explicit ProjectBox(QWidget *parent);

    QStringList names() const;
    /// Replaces the list; the text stays.
    void setNames(const QStringList &names);

Q_SIGNALS:
    void characterRefused();
    /// The user chose from the list; the text is not empty.
    void projectSelected(const QString &name);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void dropForbidden(const QString &text);
};
