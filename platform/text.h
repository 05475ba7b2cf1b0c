#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/api.h"
#include "qal/types.h"

/// Texts. Inside a program they are 8-bit, in the system code page; across interfaces they are UTF-16 blocks.
/// Nothing here fails: bytes or units that mean nothing become "?". Any thread; the code page is set once,
/// early.
namespace platform {

inline constexpr std::uint32_t kUtf8 = 65001;
inline constexpr std::uint32_t kShiftJis = 932;

/// Chooses the system code page, kUtf8 (at start) or kShiftJis. False, and no change, for any other.
PLATFORM_API bool SetCodePage(std::uint32_t codePage);
PLATFORM_API std::uint32_t CodePage();

/// 8-bit text of an interface text; null gives the empty text. Zero units in the block are kept.
PLATFORM_API std::string Narrow(qal::WideText text);
PLATFORM_API std::string Narrow(std::u16string_view text);
PLATFORM_API std::u16string Widen(std::string_view text);
/// New block for an out argument, freed by the receiver with qal::FreeText. Null only when memory is out.
PLATFORM_API char16_t* NewWide(std::string_view text);

/// From and to UTF-8, the form of resources, native file names and JSON, whatever the system code page is.
PLATFORM_API std::string FromUtf8(std::string_view utf8);
PLATFORM_API std::string ToUtf8(std::string_view text);

/// An in argument: `service->Open(Wide(name).get())`. The block lives as long as the object.
class PLATFORM_API Wide {
 public:
  explicit Wide(std::string_view text) : block_(NewWide(text)) {}
  ~Wide() { qal::FreeText(block_); }
  Wide(const Wide&) = delete;
  Wide& operator=(const Wide&) = delete;
  qal::WideText get() const { return block_; }

 private:
  char16_t* block_;
};

/// An out argument: `service->GetName(name.put())`, then `name.str()`. Frees what it was given.
class PLATFORM_API WideOut {
 public:
  WideOut() = default;
  ~WideOut() { qal::FreeText(block_); }
  WideOut(const WideOut&) = delete;
  WideOut& operator=(const WideOut&) = delete;
  /// Empties the object and gives the place to write to.
  char16_t** put();
  qal::WideText get() const { return block_; }
  bool empty() const { return block_ == nullptr || *block_ == u'\0'; }
  std::string str() const { return Narrow(qal::WideText{block_}); }

 private:
  char16_t* block_ = nullptr;
};

/// printf into a text.
PLATFORM_API std::string Format(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Characters. Positions are byte offsets; a character is 1 to 4 bytes. Bytes that form no character count one
// each.

/// Whether `byte` can begin a character of several bytes in the current code page.
PLATFORM_API bool IsLeadByte(unsigned char byte);
/// Bytes of the character at `position`; at least 1, never beyond the text. `position` must be inside the
/// text.
PLATFORM_API std::size_t CharLength(std::string_view text, std::size_t position);
/// Offset behind the character at `position`; the text's size at its end.
PLATFORM_API std::size_t NextChar(std::string_view text, std::size_t position);
/// First and last place of a single-byte character, never the second byte of another; npos when there is
/// none.
PLATFORM_API std::size_t FindChar(std::string_view text, char wanted, std::size_t from = 0);
PLATFORM_API std::size_t FindLastChar(std::string_view text, char wanted);
/// First place of `wanted` that begins at a character; npos when there is none.
PLATFORM_API std::size_t FindText(std::string_view text, std::string_view wanted, std::size_t from = 0);
PLATFORM_API std::size_t FindLastBackslash(std::string_view text);
/// As many whole characters as fit into `bytes`.
PLATFORM_API std::string_view CutToBytes(std::string_view text, std::size_t bytes);

/// Case is changed where the changed character has as many bytes as before, so offsets stay valid.
PLATFORM_API std::string ToUpper(std::string_view text);
PLATFORM_API std::string ToLower(std::string_view text);
/// Negative, 0 or positive, of the lower-case forms byte by byte.
PLATFORM_API int CompareNoCase(std::string_view left, std::string_view right);
PLATFORM_API bool EqualNoCase(std::string_view left, std::string_view right);
/// Without blanks, tabs and line ends at both ends.
PLATFORM_API std::string Trim(std::string_view text);
/// `text` with every `from` replaced by `to`.
PLATFORM_API std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to);

}  // namespace platform
