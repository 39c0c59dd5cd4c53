#pragma once

#include "platform/Database.h"
#include "platform/Prompter.h"
#include "state/Module1.h"

#include <optional>

/// Copies a database file to a place of the user's choice, and never over another file. References must
/// outlive it.
class DatabaseBackup
{
public:
    struct Services {
        Module1 &state;
        Database &database;
        Prompter &prompter;
    };

    explicit DatabaseBackup(const Services &services);

    /// The program's own database; says so when it is not there.
    QString firstSource();

    /// Another one of the user's choice, if any; `name` is proposed.
    std::optional<QString> chooseSource(const QString &name);

    /// Asks where the copy called `name` goes and makes it. True when it is there; whatever is in its way is
    /// told.
    bool save(const QString &source, const QString &name);

private:
    bool copied(const QString &source, const QString &target);

    Services m_services;
};
