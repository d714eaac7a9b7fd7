#pragma once

#include "adapters/posix/FileCopy.h"
#include "adapters/posix/FileCreation.h"
#include "adapters/posix/FileMetadata.h"
#include "adapters/posix/LockedFile.h"
#include "adapters/vcard/CardFile.h"
#include "adapters/vcard/ContentHash.h"
#include "adapters/vcard/TextDecoding.h"

#include <cstddef>
#include <filesystem>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace dunmora {

/// What a deletion has removed from one file, and where it was.
struct RemovedFile {
    /// Bytes that were one after another in the file.
    struct Part {
        /// Where they belong in the content that the deletion left.
        std::size_t offset;
        /// Where they are in `bytes`.
        ByteRange range;
    };

    /// The names under which the book reached the file.
    std::vector<std::filesystem::path> names;
    /// The same names as absolute paths.
    NewNames places;
    FileMetadata metadata;
    FileEncoding encoding = FileEncoding::Bytes;
    /// The content before and after the deletion.
    ContentHash before;
    ContentHash after;
    /// The file itself was removed; `bytes` is its whole content.
    bool isWholeFile = false;
    /// The removed cards; nothing else holds them any longer.
    std::string bytes;
    std::vector<Part> parts;
    std::size_t people = 0;
};

/// What one save has removed from a book.
struct Deletion {
    std::vector<RemovedFile> files;

    std::size_t people() const;

    /// The cards as the content of one file.
    /// Errors: PlatformError when some are UTF-16 and others are not.
    std::string cards() const;
};

/// An attribute for a file in which a deletion leaves text but no card. It tells later runs that
/// this very content is what remained. Thread: any. Errors: std::bad_alloc.
FileAttribute remainderMark(const Pieces& content);

/// What deletions have left of the files that they changed.
using Remainders = std::set<ContentHash>;

/// Thread: any. Errors: std::bad_alloc.
Remainders remaindersOf(std::span<const Deletion> deletions);

/// Whether the file is as a deletion has left it: one of this run, or one of an earlier run, where
/// the file system keeps attributes. Thread: any; blocks on the disk. Errors: std::bad_alloc.
bool isRemainder(const CardFile& file, const Remainders& ofThisRun);

/// Notes what will be removed from a file when the ranges in `removed` are cut out of it, besides
/// those that are cut out already. `locked` is the same file.
/// Thread: any; blocks on the disk. Errors: none.
RemovedFile removedFrom(const CardFile& file, const CardFile::Ranges& removed,
                        const LockedFile& locked);

/// Notes that a whole file will be removed.
RemovedFile removedWith(const CardFile& file, const LockedFile& locked);

}  // namespace dunmora
