-- The page database as it is delivered: empty, one table, one row per page of every project.
-- Texts compare without regard to letter case, file paths as they stand. Only built-in collations and types
-- are used, so that any SQLite program can read the file.
create table PageData (
    ID                 integer primary key autoincrement,
    ProjectName        text collate nocase,
    PageNumber         integer,
    PageStatus         text collate nocase,
    ScreenShotFilePath text,
    Date               date,  -- text, yyyy-mm-dd
    ProjectDirectory   text,
    Layout             integer,
    OrderInPage        integer,
    PageTitle          text collate nocase,
    SubTitle           text collate nocase,
    PageSummary        text collate nocase,
    Note1              text collate nocase,
    Note2              text collate nocase,
    MyOwnNotes         text collate nocase,
    BookTitle          text collate nocase,
    Chapter            text collate nocase,
    Section            text collate nocase,
    KeyWord            text collate nocase,
    VersionNumber      text collate nocase,
    HTMLFilePath       text,
    WordFilePath       text
);

create index PageDataByProject on PageData (ProjectName, PageNumber);
