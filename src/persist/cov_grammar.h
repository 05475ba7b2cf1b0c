// The words, numbers and row lines of ".COV" files, shared by every writer and reader. Pure functions, any
// thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "qal/types.h"

namespace coverage {

inline constexpr std::string_view kConfigurationKey = "Configuration name";
inline constexpr std::string_view kProjectKey = "Project name";
inline constexpr std::string_view kTypeKey = "Type";
inline constexpr std::string_view kFileNameKey = "File name";
inline constexpr std::string_view kStartKey = "Start Address";
inline constexpr std::string_view kEndKey = "End Address";
inline constexpr std::string_view kEnableKey = "Enable_status";
inline constexpr std::string_view kPercentageKey = "Percentage";
inline constexpr std::string_view kFunctionKey = "Function_name";
inline constexpr std::string_view kSectionFileKey = "File_name";
inline constexpr std::string_view kTypeRange = "Range";
inline constexpr std::string_view kTypeFile = "File";
inline constexpr std::string_view kWindowSection = "[Coverage Window";
inline constexpr std::string_view kInstanceSection = "[Coverage Instance";

/// Longest texts that a reader takes of a line; what follows on the line is skipped.
inline constexpr std::size_t kHeaderLineLimit = 664;
inline constexpr std::size_t kSectionLineLimit = 767;

/// Value of the digits at the front of `text`, behind blanks (and an optional "0x" for hexadecimal ones); 0
/// when there are none, 0xFFFFFFFF when it does not fit.
std::uint32_t ParseHex32(std::string_view text);
std::uint32_t ParseDecimal32(std::string_view text);

bool IsSectionLine(std::string_view line);
/// Splits "key= value". False when there is no "=".
bool SplitKeyLine(std::string_view line, std::string_view& key, std::string_view& value);

/// What a row line says becomes two pairs with the row's address, as the counters take them. A larger count
/// reads as 0xFFFFFFFF, an unknown pass text as state 0. One row line without its line break. False when the
/// line is no row; nothing is then changed.
bool ParseTypedRow(std::string_view line, qal::CountPair& count, qal::CountPair& pass);
bool ParseUntypedRow(std::string_view line, qal::CountPair& count, qal::CountPair& pass);

/// Reads a row of the exact columns that the writers make (8 digits, pass text, 8 hexadecimal digits, line
/// break) from `at`; at least kFastRowBytes must be readable there. Gives the bytes consumed, 0 for any other
/// shape.
inline constexpr std::size_t kFastRowBytes = 32;
std::size_t ParseFastRow(const char* at, qal::CountPair& count, qal::CountPair& pass);

/// Writes "\r\n", the count, the pass text and the address text to `out`, which must hold
/// kRowBytesWithoutAddress + the size of `address` (at least 8). `pass` is 0 to 3. Gives the new end.
inline constexpr std::size_t kRowBytesWithoutAddress = 2 + 20 + 1 + 3 + 1;
char* FormatRow(char* out, std::uint64_t count, std::uint32_t pass, std::string_view address);

/// Appends `value` in decimal or lower-case hexadecimal, with zeros in front up to 8 digits. Gives the new
/// end.
char* FormatDecimal8(char* out, std::uint64_t value);
char* FormatHex8(char* out, std::uint32_t value);

/// Puts the two in order, then lowers an odd start and an even end by one, so that whole 2-byte steps are
/// covered; a range of one address keeps it.
void AlignToSteps(std::uint32_t& start, std::uint32_t& end);

}  // namespace coverage
