#pragma once

#include "pagestore/PageDatabase.h"

/// The order of a project's pages.
namespace PageOrder
{
/// Exchanges the places of two pages of one project: each takes the other's page number. Pages that share a
/// number are numbered apart first, upwards, so that the project's highest number, from which later file
/// names are made, is never lowered. One transaction; throws RunTimeError, and nothing is changed then.
void exchange(PageDatabase &database, std::int64_t id, std::int64_t other);
} // namespace PageOrder
