#include <gtest/gtest.h>

#include "doubles/host.h"
#include "platform/module.h"
#include "platform/paths.h"
#include "qal/all.h"

namespace {

/// The built module, which lies beside the test.
class EntryPoints : public testing::Test {
 protected:
  void SetUp() override {
    const auto own = platform::ModulePath(reinterpret_cast<const void*>(&qal::kEntryPointNames));
    ASSERT_TRUE(own);
    std::string why;
    module =
        platform::Module::Load(platform::JoinPath(platform::DirectoryPart(*own), "JepCoverage.dll"), &why);
    ASSERT_TRUE(module) << why;
  }
  template <class Function>
  Function Find(const char* name) {
    return module.Find<Function>(name);
  }
  qal::Status Query(void* key, const qal::Guid& id, void** out) {
    return Find<qal::QueryInterface2Function>("QueryInterface2")(key, &id, out);
  }
  qal::Status Create(void* key) { return Find<qal::CreateInstanceFunction>("CreateInstance")(key); }
  qal::Status Destroy(void* key) { return Find<qal::DestroyInstanceFunction>("DestroyInstance")(key); }

  platform::Module module;
};

TEST_F(EntryPoints, HaveNamesAndOrdinals) {
  for (std::uint32_t ordinal = 1; ordinal <= 5; ++ordinal) {
    void* const byName = module.FindExport(qal::kEntryPointNames[ordinal - 1]);
    EXPECT_NE(byName, nullptr);
    EXPECT_EQ(module.FindExport(ordinal), byName) << ordinal;
  }
  EXPECT_EQ(module.FindExport(6u), nullptr);
}

TEST_F(EntryPoints, TellTheVersionBeforeAnythingElse) {
  std::uint32_t major = 7;
  std::uint32_t minor = 7;
  EXPECT_EQ(Find<qal::GetComponentVersionFunction>("GetComponentVersion")(&major, &minor), qal::kOk);
  EXPECT_EQ(major, 1u);
  EXPECT_EQ(minor, 0u);
}

TEST_F(EntryPoints, EnterTheComponentWhateverTheRegistrarSays) {
  doubles::CallLog log;
  doubles::StubComponentRegistrar registrar(log);
  const auto enter = Find<qal::LibraryRegister2Function>("LibraryRegister2");
  log.FailCall(1);
  EXPECT_EQ(enter(&registrar), qal::kOk);
  EXPECT_EQ(log.Take(), "registrar.RegisterComponent(\"Generic JEP Coverage\", 2, 1, 0, class)\n");
  EXPECT_EQ(enter(nullptr), qal::kOk);
}

TEST_F(EntryPoints, KeepObjectsByTheirKeys) {
  int first = 0;
  int second = 0;
  void* out = this;
  EXPECT_EQ(Query(&first, qal::iid::kComponent2, &out), qal::kNoInterface);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(Create(&first), qal::kOk);
  EXPECT_EQ(Create(&second), qal::kOk);
  void* one = nullptr;
  void* other = nullptr;
  EXPECT_EQ(Query(&first, qal::iid::kComponent2, &one), qal::kOk);
  EXPECT_EQ(Query(&second, qal::kClassId, &other), qal::kOk);
  EXPECT_NE(one, other);
  EXPECT_EQ(Query(&first, qal::iid::kSettings, &out), qal::kNoInterface);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(Destroy(&first), qal::kOk);
  EXPECT_EQ(Destroy(&first), qal::kOk);
  EXPECT_EQ(Query(&first, qal::iid::kComponent2, &out), qal::kNoInterface);
  EXPECT_EQ(Query(&second, qal::iid::kComponent2, &out), qal::kOk);
  EXPECT_EQ(out, other);
  EXPECT_EQ(Destroy(&second), qal::kOk);
  EXPECT_EQ(Query(nullptr, qal::iid::kComponent2, &out), qal::kNoInterface);
}

}  // namespace
