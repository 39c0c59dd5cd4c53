#include "platform/qt/BrowserPane.h"

#include "platform/qt/BrowserAddress.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

BrowserPane::BrowserPane(std::unique_ptr<BrowserView> engine)
    : m_engine(std::move(engine)), m_pages(new QStackedWidget(this)), pnlProblem(new QWidget(this)),
      lblAddress(new QLabel(pnlProblem)), lblProblem(new QLabel(pnlProblem)),
      cmdReload(new QPushButton(u"&Reload"_s, pnlProblem)),
      cmdOpenOutside(new QPushButton(u"&Open with the system's program"_s, pnlProblem))
{
    buildPanel();
    m_pages->addWidget(m_engine->widget());
    m_pages->addWidget(pnlProblem);
    setFocusProxy(m_engine->widget());
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_pages);
    connectEngine();
}

BrowserPane::~BrowserPane()
{
    m_engine->setEvents({});
}

void BrowserPane::buildPanel()
{
    pnlProblem->setObjectName("pnlProblem"_L1);
    lblAddress->setObjectName("lblAddress"_L1);
    lblProblem->setObjectName("lblProblem"_L1);
    cmdReload->setObjectName("cmdReload"_L1);
    cmdOpenOutside->setObjectName("cmdOpenOutside"_L1);
    QFont large = lblProblem->font();
    large.setPointSizeF(large.pointSizeF() * 1.4);
    lblProblem->setFont(large);
    for (QLabel *label : {lblProblem, lblAddress}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdReload);
    buttons->addWidget(cmdOpenOutside);
    buttons->addStretch();
    auto *column = new QVBoxLayout(pnlProblem);
    column->setContentsMargins(48, 40, 48, 40);
    column->setSpacing(14);
    column->addWidget(lblProblem);
    column->addWidget(lblAddress);
    column->addLayout(buttons);
    column->addStretch();
    connect(cmdReload, &QPushButton::clicked, this, &BrowserPane::Refresh);
    connect(cmdOpenOutside, &QPushButton::clicked, this, [this] {
        if (m_events.openOutside)
            m_events.openOutside(m_problem.address);
    });
}

void BrowserPane::connectEngine()
{
    Events events;
    events.navigateComplete = [this] {
        hidePanel();
        if (m_events.navigateComplete)
            m_events.navigateComplete();
    };
    events.changed = [this] { tellChanged(); };
    events.failed = [this](const BrowserProblem &problem) { showProblem(problem); };
    events.openOutside = [this](const QString &address) {
        if (m_events.openOutside)
            m_events.openOutside(address);
    };
    events.askDownload = [this](const QString &name) {
        return m_events.askDownload ? m_events.askDownload(name) : std::nullopt;
    };
    events.report = [this](const QString &text) {
        if (m_events.report)
            m_events.report(text);
    };
    m_engine->setEvents(std::move(events));
}

void BrowserPane::Navigate(const QString &address)
{
    const QUrl meant = BrowserAddress::understand(address);
    const BrowserAddress::Check check = BrowserAddress::check(meant);
    switch (check.kind) {
    case BrowserAddress::Kind::Refused:
        m_engine->Stop();
        return showProblem({meant.isValid() ? BrowserAddress::shown(meant) : address, check.reason});
    case BrowserAddress::Kind::Document:
        if (m_events.openOutside)
            m_events.openOutside(BrowserAddress::shown(meant));
        return;
    case BrowserAddress::Kind::Page:
        hidePanel();
        return m_engine->Navigate(BrowserAddress::shown(meant));
    }
}

void BrowserPane::GoBack()
{
    if (panelShown() && !m_engine->LocationURL().isEmpty()) {
        hidePanel();
        if (m_events.navigateComplete)
            m_events.navigateComplete();
        tellChanged();
    } else {
        m_engine->GoBack();
    }
}

void BrowserPane::Refresh()
{
    if (!panelShown())
        return m_engine->Refresh();
    const QString address = m_problem.address;
    Navigate(address);
}

QString BrowserPane::LocationURL() const
{
    return panelShown() ? m_problem.address : m_engine->LocationURL();
}

QString BrowserPane::title() const
{
    return panelShown() ? QString() : m_engine->title();
}

bool BrowserPane::canGoBack() const
{
    return panelShown() ? !m_engine->LocationURL().isEmpty() : m_engine->canGoBack();
}

void BrowserPane::print(QPagedPaintDevice &device, std::function<void(bool)> done)
{
    if (panelShown())
        done(false);
    else
        m_engine->print(device, std::move(done));
}

void BrowserPane::showProblem(const BrowserProblem &problem)
{
    m_problem = problem;
    lblProblem->setText(problem.text);
    lblAddress->setText(problem.address);
    cmdReload->setVisible(problem.offer == BrowserProblem::Offer::Reload);
    cmdOpenOutside->setVisible(problem.offer == BrowserProblem::Offer::OpenOutside);
    m_pages->setCurrentWidget(pnlProblem);
    tellChanged();
}

void BrowserPane::hidePanel()
{
    m_pages->setCurrentWidget(m_engine->widget());
}

void BrowserPane::tellChanged()
{
    if (m_events.changed)
        m_events.changed();
}

bool BrowserPane::panelShown() const
{
    return m_pages->currentWidget() == pnlProblem;
}
