#include "persist/cov_output.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "persist/cov_file.h"

namespace coverage {

CovOutput::CovOutput(platform::TextWriter& file)
    : file_(file),
      chunk_(std::make_unique_for_overwrite<char[]>(kChunkBytes)),
      at_(chunk_.get()),
      last_(chunk_.get() + kChunkBytes - kRowBytesWithoutAddress - kLongestAddress) {}

void CovOutput::Header(const CovHeader& header, bool withFileLine) {
  const std::string_view type = header.type == CovType::kFile ? kTypeFile : kTypeRange;
  Line(kConfigurationKey, header.configuration);
  Line(kProjectKey, header.project);
  Line(kTypeKey, type);
  if (withFileLine) Line(kFileNameKey, header.fileName);
}

void CovOutput::Section(const CovSectionLines& section) {
  char text[32];
  const auto hex = [&text](std::uint32_t value) { return std::string_view(text, FormatHex8(text, value)); };
  Append("\r\n");
  Append(section.sectionName);
  Append(" ");
  Append(std::to_string(section.number));
  Append("]");
  Line(kStartKey, hex(section.start));
  Line(kEndKey, hex(section.end));
  Line(kEnableKey, hex(section.enableStatus));
  Line(kPercentageKey, std::string_view(text, FormatDecimal8(text, section.percentage)));
  Line(kFunctionKey, section.functionName);
  Append("\r\n (Times)\t(Pass)\t(Address)");
}

void CovOutput::Line(std::string_view key, std::string_view value) {
  if (started_) Append("\r\n");
  started_ = true;
  Append(key);
  Append("= ");
  Append(value);
}

void CovOutput::Append(std::string_view text) {
  while (!text.empty()) {
    const auto room = static_cast<std::size_t>(chunk_.get() + kChunkBytes - at_);
    const std::size_t taken = std::min(room, text.size());
    std::memcpy(at_, text.data(), taken);
    at_ += taken;
    text.remove_prefix(taken);
    if (!text.empty()) Flush();
  }
}

void CovOutput::LongRow(std::uint64_t count, std::uint32_t pass, std::string_view address) {
  Flush();
  if (address.size() <= kLongestAddress) {
    at_ = FormatRow(at_, count, pass, address);
    return;
  }
  char front[kRowBytesWithoutAddress + 8];
  const char* end = FormatRow(front, count, pass, {}) - 8;
  Append(std::string_view(front, static_cast<std::size_t>(end - front)));
  Append(address);
}

void CovOutput::Flush() {
  const auto size = static_cast<std::size_t>(at_ - chunk_.get());
  if (size != 0) file_.WriteRaw({chunk_.get(), size});
  at_ = chunk_.get();
}

}  // namespace coverage
