#pragma once

namespace dunmora {

class CardSource;
class ContactsParser;
class TextPieces;
class UniqueProperties;
struct TableStyle;

/// Prints the table of everyone who is checked, and so to be deleted, in the order of the review:
/// in each group those who are kept, then those who are checked. People in no group come last.
/// `properties` has read the rows of the engine; `cards` names the people whose names are blank and
/// may be null.
/// Thread: as reading the engine's collections. Errors: those of `out`.
void printDeletionTable(TextPieces& out, const ContactsParser& engine,
                        const UniqueProperties& properties, const CardSource* cards,
                        const TableStyle& style);

}  // namespace dunmora
