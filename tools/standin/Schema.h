#pragma once

namespace quorvantis::standin {

inline constexpr int schemaVersion = 1;

/// The tables. A column is named like the record's field that it holds; see docs/history-records.md.
inline constexpr char schema[] = R"sql(
    -- `number`: the milliseconds of createdAt, or the next number that is free; so the newest entry has the
    -- highest.
    create table entry (
        number integer primary key, id text not null unique, createdAt real not null, primaryKind text not null,
        kind text not null, preview text not null, detail text not null, sourceApplication text, text text,
        hasFilePaths integer not null);
    create table filePath (
        entry integer not null references entry on delete cascade, position integer not null, path text not null,
        primary key (entry, position)) without rowid;
    create table item (
        number integer primary key, entry integer not null references entry on delete cascade,
        id text not null, "index" integer not null);
    create index itemOfEntry on item (entry);
    create table representation (
        number integer primary key, item integer not null references item on delete cascade,
        id text not null, uti text not null, byteCount integer not null, sha256 text, storagePath text,
        inlineText text, isOriginalRepresentation integer not null, thumbnailPath text);
    create index representationOfItem on representation (item);
    create index storedRepresentation on representation (sha256) where storagePath is not null;
    create table imageMetadata (
        representation integer primary key references representation on delete cascade,
        pixelWidth integer not null, pixelHeight integer not null, pixelHash text, bitsPerComponent integer,
        hasAlpha integer, colorModel text, profileName text, orientation integer, frameCount integer,
        originalUTI text not null, isOriginalFile integer not null, isBitExact integer not null, conversion text);
    create index imageOfPixels on imageMetadata (pixelHash);

    -- What is known of the files in the folders of pictures; without pixelHash, the file is no picture.
    -- `entry` is the file's, while its folder is served.
    create table knownFile (
        path text primary key, size integer not null, changedAt integer not null,  -- nanoseconds
        sha256 text, pixelHash text, pixelWidth integer, pixelHeight integer,
        uti text, modifiedAt real, entry integer references entry on delete set null) without rowid;
    create index knownFileOfEntry on knownFile (entry);
)sql";

/// The folded text of each entry, under its number, and an index of all its parts of three characters.
inline constexpr char searchedTable[] =
    "create virtual table searched using fts5 (text, tokenize = 'trigram case_sensitive 1', detail = none)";

}  // namespace quorvantis::standin
