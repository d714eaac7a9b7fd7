#pragma once

#include "adapters/posix/FileCopy.h"
#include "adapters/posix/FileCreation.h"
#include "adapters/posix/FileMetadata.h"
#include "adapters/posix/LockedFile.h"
#include "adapters/posix/Pieces.h"
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
///
/// At first the removed bytes are only in the reading of the file, because most programs end, or
/// read the book again, without putting anybody back. They must be copied before the reading ends.
struct RemovedFile {
    /// Bytes that were one after another in the file.
    struct Part {
        /// Where they belong in the content that the deletion left.
        std::size_t offset;
        /// Where they are in `bytes`.
        ByteRange range;
    };

    /// The file as it was read, and what deletions have cut out of it: all until the one before,
    /// and all with this one, unless it has removed the file itself.
    struct Reading {
        const CardFile* file = nullptr;
        CardFile::Ranges earlier;
        CardFile::Ranges all;
    };

    /// Copies what is only in the reading, unless that has been done. Thread: any, one at a time.
    /// Errors: std::bad_alloc; nothing has changed then.
    void copyFromReading();

    /// The removed bytes, in the reading or copied.
    Pieces removedPieces() const;

    /// The names under which the book reached the file.
    std::vector<std::filesystem::path> names;
    /// The same names as absolute paths.
    NewNames places;
    FileMetadata metadata;
    FileEncoding encoding = FileEncoding::Bytes;
    /// The file itself was removed.
    bool isWholeFile = false;
    std::size_t people = 0;
    /// Its file is null when the bytes have been copied.
    Reading reading;

    // The following is empty until then.

    /// The content before the deletion, and, unless the file itself was removed, after it.
    ContentHash before;
    ContentHash after;
    /// The removed cards, or the whole content of a file that was removed; nothing else holds them
    /// any longer.
    std::string bytes;
    /// Of the removed cards.
    std::vector<Part> parts;
};

/// What one save has removed from a book.
struct Deletion {
    std::vector<RemovedFile> files;

    std::size_t people() const;

    /// Copies what is only in the reading of the files, which may end then.
    /// Errors: std::bad_alloc; nothing is lost then.
    void copyFromReading();

    /// The cards as the content of one file.
    /// Errors: PlatformError when some are UTF-16 and others are not.
    std::string cards() const;
};

/// An attribute for a file in which a deletion leaves text but no card. It tells later runs that
/// this very content is what remained. Thread: any. Errors: std::bad_alloc.
FileAttribute remainderMark(const Pieces& content);

/// What deletions have left of the files that they changed.
using Remainders = std::set<ContentHash>;

/// Of deletions that have copied what they need. Thread: any. Errors: std::bad_alloc.
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
