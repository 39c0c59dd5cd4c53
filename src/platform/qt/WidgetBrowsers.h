#pragma once

#include "platform/BrowserView.h"

#include <QString>

/// Views of the web engine, which lies in a module of its own that is opened for the first view: a program
/// that shows no page starts without it. Where it is not installed or cannot run, views show plain HTML.
class WidgetBrowsers : public Browsers
{
public:
    /// `module` is the file of the engine; empty: there is none.
    explicit WidgetBrowsers(QString module) : m_module(std::move(module)) {}

    std::unique_ptr<BrowserView> make() override;

    /// What the toolkit must know before the application object is made, should the engine be wanted later.
    static void prepare();
    /// To be called after that: programs that are started from here shall not be prepared as well.
    static void prepared();

    /// The module that belongs to the program in `programFolder`; empty when it is not installed.
    static QString installedModule(const QString &programFolder);

private:
    using Maker = BrowserView *(*)();
    Maker maker();

    QString m_module;
    Maker m_maker = nullptr;
    bool m_tried = false;
};
