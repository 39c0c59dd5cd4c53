#pragma once

#include "app/CommandLine.h"
#include "platform/RealPlatform.h"
#include "state/Module1.h"

/// What the command line asks for without a window. Each prints its result to standard output and what is in
/// its way to standard error, and returns the exit code: 0, or 1 after a failure.
namespace CommandLineWork
{
/// One project in a line: its name, a tab, the number of its pages.
int listProjects(Module1 &state, Platform &platform);

/// A copy of the database; a file that exists is not replaced.
int exportDatabase(Module1 &state, Platform &platform, const QString &file);

/// The documents of a project, see CommandLine::help(). SIGINT and SIGTERM end it as Cancel does.
int generate(Module1 &state, Platform &platform, const CommandLine &line);
} // namespace CommandLineWork
