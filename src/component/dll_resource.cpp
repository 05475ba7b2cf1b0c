#include "component/dll_resource.h"

#include "component/resource_queries.h"
#include "platform/text.h"
#include "util/texts.h"

namespace coverage {
namespace {

constexpr char kResourceType[] = "Resource";
constexpr char kProductVersion[] = "1.0";
constexpr std::int32_t kOrdinalVersion = 1;

}  // namespace

CDllResource::~CDllResource() { LeaveCurrent(); }

CDllResource& CDllResource::operator=(const CDllResource& other) {
  if (this == &other) return *this;
  LeaveCurrent();
  fileName_ = other.fileName_;
  productVersion_ = other.productVersion_;
  type_ = other.type_;
  interfaceMajor_ = other.interfaceMajor_;
  interfaceMinor_ = other.interfaceMinor_;
  ordinalVersion_ = other.ordinalVersion_;
  module_ = other.module() ? platform::Module::Load(fileName_) : platform::Module{};
  return *this;
}

void CDllResource::QueryInterfaceVersion() {
  interfaceMajor_ = interfaceMinor_ = 0;
  const auto query = module_.Find<InterfaceVersionQuery>("GetDLLInterfaceVersion");
  std::int32_t major = 0;
  std::int32_t minor = 0;
  if (!query || query(&major, &minor) != 0) return;
  interfaceMajor_ = major;
  interfaceMinor_ = minor;
}

void CDllResource::QueryOrdinalVersion() {
  ordinalVersion_ = 0;
  const auto query = module_.Find<OrdinalVersionQuery>("GetDLLOrdinalVersion");
  std::int32_t ordinal = 0;
  if (query && query(&ordinal) == 0) ordinalVersion_ = ordinal;
}

void CDllResource::QueryProductVersion() {
  productVersion_ = AskText(module_.Find<TextQuery>("GetDLLProductVersion")).value_or(std::string{});
}

void CDllResource::QueryType() {
  type_ = AskText(module_.Find<TextQuery>("GetDLLType")).value_or(std::string{});
}

void CDllResource::QueryAll() {
  QueryInterfaceVersion();
  QueryProductVersion();
  QueryOrdinalVersion();
  QueryType();
}

bool CDllResource::Load(std::string* errorText) {
  LeaveCurrent();
  module_ = platform::Module::Load(fileName_);
  if (!module_) {
    if (errorText) *errorText = platform::ReplaceAll(Text(strings::kResourceLoadError), "%1", fileName_);
    return false;
  }
  QueryAll();
  return true;
}

void CDllResource::Attach(qal::ModuleHandle module) {
  LeaveCurrent();
  module_ = platform::Module::Attach(module);
  QueryAll();
}

void CDllResource::GetVersionTexts(std::string* product, std::string* interfaceVersion,
                                   std::string* ordinal) const {
  *product = productVersion_;
  *interfaceVersion = platform::Format("%d.%d", interfaceMajor_, interfaceMinor_);
  *ordinal = platform::Format("%d", ordinalVersion_);
}

bool CDllResource::IsAtLeast(std::int32_t major, std::int32_t minor) const {
  return interfaceMajor_ > major || (interfaceMajor_ == major && interfaceMinor_ >= minor);
}

bool CDllResource::IsVersion(std::int32_t major, std::int32_t minor) const {
  return interfaceMajor_ == major && interfaceMinor_ == minor;
}

void CDllResource::MakeCurrent() {
  if (current_ || !module()) return;
  AddResourceModule(module());
  current_ = true;
}

void CDllResource::LeaveCurrent() {
  if (current_) RemoveResourceModule(module());
  current_ = false;
}

std::unique_ptr<CDllResource> LoadResourceModule(const std::string& path, std::string* errorText) {
  auto resource = std::make_unique<CDllResource>(path);
  if (!resource->Load(errorText)) return nullptr;
  if (resource->type() != kResourceType) {
    *errorText = platform::ReplaceAll(Text(strings::kResourceWrongType), "%s", path);
    return nullptr;
  }
  if (!resource->IsVersion(1, 0) || resource->ordinalVersion() != kOrdinalVersion ||
      resource->productVersion() != kProductVersion) {
    *errorText = Text(strings::kResourceWrongVersion);
    return nullptr;
  }
  resource->MakeCurrent();
  return resource;
}

}  // namespace coverage
