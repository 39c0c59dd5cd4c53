#pragma once

/// The function of the engine's module that makes a view: `extern "C" BrowserView *name()`. Its name carries
/// the version of BrowserView, so that a module left over from another version is not taken.
inline constexpr const char *browserModuleEntry = "shotlyMakeBrowserView1";
