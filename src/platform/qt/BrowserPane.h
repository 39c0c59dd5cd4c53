#pragma once

#include "platform/BrowserView.h"

#include <QWidget>

class QLabel;
class QPushButton;
class QStackedWidget;

/// A view of another engine with a panel in its place that tells what went wrong. It checks addresses before
/// the engine gets them, and while the panel is shown, it stands for the page that could not be: its address
/// is the view's, going back leads to the page before it, refreshing tries again.
class BrowserPane : public QWidget, public BrowserView
{
    Q_OBJECT

public:
    explicit BrowserPane(std::unique_ptr<BrowserView> engine);
    ~BrowserPane() override;

    QWidget *widget() override { return this; }
    void setEvents(Events events) override { m_events = std::move(events); }

    void Navigate(const QString &address) override;
    void GoBack() override;
    void GoForward() override { m_engine->GoForward(); }
    void Refresh() override;
    void Stop() override { m_engine->Stop(); }

    bool Busy() const override { return m_engine->Busy(); }
    QString LocationURL() const override;
    QString title() const override;
    bool canGoBack() const override;
    bool canGoForward() const override { return m_engine->canGoForward(); }
    void print(QPagedPaintDevice &device, std::function<void(bool)> done) override;

private:
    void buildPanel();
    void connectEngine();
    void showProblem(const BrowserProblem &problem);
    void hidePanel();
    void tellChanged();
    bool panelShown() const;

    std::unique_ptr<BrowserView> m_engine;
    Events m_events;
    BrowserProblem m_problem;
    QStackedWidget *m_pages;
    QWidget *pnlProblem;
    QLabel *lblAddress;
    QLabel *lblProblem;
    QPushButton *cmdReload;
    QPushButton *cmdOpenOutside;
};
