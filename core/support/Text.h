// Small operations on UTF-8 text, and repair of bytes that are not UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tidewright {

/// `bytes` with every sequence that is not UTF-8 replaced by U+FFFD, by the recommended practice of
/// the Unicode standard (one replacement per maximal ill-formed part).
std::string repairedUTF8(std::string_view bytes);

bool isUTF8(std::string_view bytes);

/// Without the white space (ASCII) and line ends at both ends.
std::string trimmed(std::string_view text);

/// Without any of the characters in `set` at both ends.
std::string trimmed(std::string_view text, std::string_view set);

/// The pieces between `separator`, empty ones left out.
std::vector<std::string> splitDroppingEmpty(std::string_view text, char separator);

/// The lines of a text, empty ones left out; a carriage return before a line's end is dropped.
std::vector<std::string> nonEmptyLines(std::string_view text);

bool contains(std::string_view text, std::string_view part);

/// `text` with every occurrence of `part` taken out.
std::string removing(std::string_view part, std::string_view text);

/// All letters in lower case, by the rules of no particular language; invalid UTF-8 is replaced.
std::string lowercased(std::string_view text);

/// In a form in which names are equal that a file system may take for the same: case, composition,
/// compatible forms of a character and invisible characters make no difference (NFKC_Casefold of
/// the Unicode standard). Invalid UTF-8 is replaced.
std::string caseFolded(std::string_view text);

/// The first letter of each word in upper case and all others in lower case ("2nd don't" becomes
/// "2Nd Don't"), by the rules of no particular language; invalid UTF-8 is replaced.
std::string capitalized(std::string_view text);

/// ASCII letters in lower case; all other bytes as they are.
std::string lowercasedASCII(std::string_view text);

/// The end of a text: at most `count` characters as a person counts them.
std::string lastCharacters(std::string_view text, std::size_t count);

/// The first number of a version: "35.0.1" gives 35; absent for "r21e" and an empty text. Empty
/// pieces are dropped first, so ".9" gives 9.
std::optional<int> majorVersion(std::string_view version);

/// How many columns a terminal needs for the text: wide characters take two, marks none.
std::size_t displayWidth(std::string_view text);

/// The text for one line of a terminal: control characters, line ends and characters that turn the
/// direction of writing become U+FFFD, so that no file name can move the cursor or hide itself.
std::string printable(std::string_view text);

/// At most `columns` columns of the text, with "…" in place of its middle where it is longer.
std::string elidedMiddle(std::string_view text, std::size_t columns);

/// The text in lines of at most `columns` columns, broken at blanks; longer words are cut.
std::vector<std::string> wrapped(std::string_view text, std::size_t columns);

} // namespace tidewright
