#pragma once

#include "platform/FileSystem.h"
#include "platform/Prompter.h"

#include <optional>

/// The path for an output file, asking about an existing one; nothing when the user gives up. An existing
/// file that may be overwritten stays until it is. `what` names the file's purpose ("Contents Page").
std::optional<QString> ChooseOutputFile(const FileSystem &files, Prompter &prompter, const QString &directory,
                                        const QString &fileName, const QString &what);
