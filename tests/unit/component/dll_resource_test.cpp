#include "component/dll_resource.h"

#include <gtest/gtest.h>

#include <cstring>

#include "component/resource_queries.h"
#include "platform/paths.h"
#include "util/texts.h"

namespace coverage {
namespace {

std::string InBin(const std::string& name) {
  static const int here = 0;
  return platform::JoinPath(platform::DirectoryPart(platform::ModulePath(&here).value_or("")), name);
}

TEST(ResourceModuleLoader, TheComponentsOwnModuleIsTaken) {
  std::string error = "untouched";
  std::unique_ptr<CDllResource> resource = LoadResourceModule(InBin("JepCoverageExtRes.dll"), &error);
  ASSERT_NE(resource, nullptr) << error;
  EXPECT_EQ(error, "untouched");
  EXPECT_EQ(resource->type(), "Resource");
  std::string product, interfaceVersion, ordinal;
  resource->GetVersionTexts(&product, &interfaceVersion, &ordinal);
  EXPECT_EQ(product + " " + interfaceVersion + " " + ordinal, "1.0 1.0 1");
  EXPECT_EQ(ResourceModule(), resource->module());
  EXPECT_NE(platform::ResourcesOf(ResourceModule()), nullptr);
  // Each component object of the library has a record of its own; the module goes with the last of them.
  std::unique_ptr<CDllResource> second = LoadResourceModule(InBin("JepCoverageExtRes.dll"), &error);
  resource.reset();
  EXPECT_EQ(ResourceModule(), second->module());
  second.reset();
  EXPECT_EQ(ResourceModule(), 0u) << "the records are gone";
  EXPECT_EQ(Text(strings::kCode), "Code") << "now from the library's own table";
}

TEST(ResourceModuleLoader, OtherModulesAreRefused) {
  const struct {
    const char *file, *error;
  } rows[] = {
      {"no_such_module.dll", "Error loading resource DLL %"},
      {"module_of_lower_case_type.dll", "Dll % is not a resources Dll"},
      {"module_of_long_type.dll", "Dll % is not a resources Dll"},
      {"module_that_says_nothing.dll", "Dll % is not a resources Dll"},
      {"module_of_interface_1_1.dll", "Incorrect version of Resources - exiting"},
      {"module_without_interface_version.dll", "Incorrect version of Resources - exiting"},
      {"module_of_product_1_00.dll", "Incorrect version of Resources - exiting"},
      {"module_of_ordinal_2.dll", "Incorrect version of Resources - exiting"},
  };
  for (const auto& row : rows) {
    const std::string path = InBin(row.file);
    std::string expected = row.error;
    if (const std::size_t place = expected.find('%'); place != std::string::npos)
      expected.replace(place, 1, path);
    std::string error;
    EXPECT_EQ(LoadResourceModule(path, &error), nullptr) << row.file;
    EXPECT_EQ(error, expected);
    EXPECT_EQ(ResourceModule(), 0u) << row.file;
  }
}

/// What the loader itself does not need: copies, libraries that somebody else loaded, and comparison.
TEST(ResourceModuleLoader, RecordsAreCopiedAttachedAndCompared) {
  auto first = std::make_unique<CDllResource>(InBin("module_of_interface_1_1.dll"));
  ASSERT_TRUE(first->Load());
  const CDllResource copy(*first);
  first.reset();
  EXPECT_NE(platform::FindExport(copy.module(), "GetDLLType"), nullptr) << "a copy holds the library itself";
  std::string compared;
  for (const auto& [major, minor] : {std::pair{0, 9}, {1, 0}, {1, 1}, {1, 2}, {2, 0}}) {
    compared += copy.IsVersion(major, minor) ? "= " : copy.IsAtLeast(major, minor) ? "> " : "< ";
  }
  EXPECT_EQ(compared, "> > = < < ");
  CDllResource attached;
  attached.Attach(platform::Module::Load(InBin("module_of_ordinal_2.dll")).release());
  EXPECT_EQ(attached.ordinalVersion(), 2);
  EXPECT_EQ(attached.type(), "Resource");
}

int calls;
std::int32_t sizes[2];

/// Answers that one call after the other gives; each notes the size it was offered.
template <std::int32_t kFirst, std::int32_t kNeeded, std::int32_t kSecond>
std::int32_t Scripted(char* buffer, std::int32_t* size) {
  sizes[calls] = *size;
  if (calls++ > 0) {
    EXPECT_EQ(*size, kNeeded);
    std::memset(buffer, 'z', static_cast<std::size_t>(*size));
    return kSecond;
  }
  std::strcpy(buffer, "first");
  *size = kNeeded;
  return kFirst;
}

TEST(TextQueries, AreAskedASecondTimeWithTheSizeNeeded) {
  const struct {
    const char* what;
    TextQuery query;
    int calls;
    std::optional<std::string> text;
  } rows[] = {
      {"no export", nullptr, 0, std::nullopt},
      {"fits", Scripted<0, 6, 0>, 1, "first"},
      {"fails", Scripted<-1, 6, 0>, 1, std::nullopt},
      {"needs more, without a zero at the end", Scripted<1, 2048, 0>, 2, std::string(2048, 'z')},
      {"needs more and fails then", Scripted<1, 2048, -1>, 2, std::nullopt},
      {"is never content", Scripted<1, 2048, 1>, 2, std::nullopt},
      {"needs less than it was given", Scripted<1, 3, 0>, 2, "zzz"},
      {"needs nothing", Scripted<1, 0, 0>, 1, std::nullopt},
      {"needs less than nothing", Scripted<1, -5, 0>, 1, std::nullopt},
      {"needs more than anybody has", Scripted<1, 0x7FFFFFFF, 0>, 1, std::nullopt},
  };
  for (const auto& row : rows) {
    calls = 0;
    EXPECT_EQ(AskText(row.query), row.text) << row.what;
    EXPECT_EQ(calls, row.calls) << row.what;
    if (row.calls > 0) {
      EXPECT_EQ(sizes[0], 1024) << row.what;
    }
  }
}

}  // namespace
}  // namespace coverage
