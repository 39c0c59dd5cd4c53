#include "pagestore/PageOrder.h"

#include "pagestore/Statements.h"
#include "platform/RunTimeError.h"

#include <QVariant>

#include <algorithm>
#include <utility>
#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace
{
struct NumberedPage {
    std::int64_t id = 0;
    std::int32_t stored = 0;
    std::int32_t number = 0;
};

/// In their order, with numbers that all differ.
std::vector<NumberedPage> pagesOfProject(PageDatabase &database, std::int64_t id)
{
    std::vector<NumberedPage> pages;
    const auto rows = database.openRecordset(Statements::numberedPages(id));
    for (; !rows->atEnd(); rows->moveNext()) {
        const std::int32_t stored = rows->field(1).toInt();
        const std::int32_t number = pages.empty() ? stored : std::max(stored, pages.back().number + 1);
        pages.push_back({rows->field(0).toLongLong(), stored, number});
    }
    return pages;
}

NumberedPage &pageWith(std::vector<NumberedPage> &pages, std::int64_t id)
{
    const auto found =
        std::find_if(pages.begin(), pages.end(), [id](const NumberedPage &page) { return page.id == id; });
    if (found == pages.end())
        throw RunTimeError(RunTimeError::DatabaseError,
                           u"The pages cannot be exchanged: one of them is not in the project any more."_s);
    return *found;
}
} // namespace

void PageOrder::exchange(PageDatabase &database, std::int64_t id, std::int64_t other)
{
    const std::unique_ptr<DatabaseBatch> batch = database.beginBatch();
    std::vector<NumberedPage> pages = pagesOfProject(database, id);
    NumberedPage &page = pageWith(pages, id);
    NumberedPage &otherPage = pageWith(pages, other);
    if (page.stored != otherPage.stored) {
        for (NumberedPage &each : pages)
            each.number = each.stored;
    }
    std::swap(page.number, otherPage.number);
    for (const NumberedPage &each : pages) {
        if (each.number != each.stored)
            database.execute(Statements::setPageNumber(each.id, each.number));
    }
    batch->commit();
}
